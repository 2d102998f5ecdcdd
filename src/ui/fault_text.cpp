#include "ui/fault_text.h"

namespace marlevo {

QString FaultText(Fault kind) {
  switch (kind) {
    case Fault::kExplained:
      return {};
    case Fault::kMissing:
      return "找不到資料庫檔案。請確認檔案沒有被移走、改名或刪除；如果真的沒有了，請把備份的檔案放到下面的位置，再試一"
             "次。";
    case Fault::kWrongPassword:
      return "資料庫的密碼不符，這個檔案不是本程式的資料庫。請把檔案改名留存，把備份的檔案放到下面的位置，再試一次。";
    case Fault::kDamaged:
      return "檔案已經損壞，或者不是 Access 資料庫。請把檔案改名留存，把備份的檔案放到下面的位置，或用 Access "
             "修復，再試一次。";
    case Fault::kNewerFormat:
      return "這是較新版本的 Access 資料庫。請用 Access 另存成 2002-2003 格式 (.mdb)。";
    case Fault::kNeedsAccess:
      return "資料庫檔案用了本程式無法維護的功能，資料沒有變動。請用 Access 照下面的說明修改檔案，"
             "或照使用手冊「問題排除」用 make_database --copy 另存新檔，再試一次。";
    case Fault::kInUse:
      return "檔案正由另一個程式開啟，現在不能寫入。請關閉那個程式，再試一次。";
    case Fault::kChanged:
      return "另一個程式改動了這個檔案。剛才的操作沒有存入，那個程式存的資料都保留著。請再做一次。";
    case Fault::kNotOurs:
      return "檔案旁邊有一個別的程式的檔案，占用了本程式要用的檔名，現在不能寫入。請把它移走或改名，再試一次。";
    case Fault::kDenied:
      return "沒有權限讀寫，或者檔案、資料夾、磁碟是唯讀的。請解除唯讀或取得權限，再試一次。";
    case Fault::kDiskFull:
      return "磁碟空間不足，資料沒有存入。請清出空間，再試一次。";
    case Fault::kDiskFailed:
      return "磁碟無法讀寫。請檢查磁碟或網路連線，再試一次。";
    case Fault::kFileFull:
      return "資料庫檔案已經達到最大容量。請刪除不用的記錄，再用 Access 壓縮檔案。";
    case Fault::kNoTable:
      return "資料庫裡缺少需要的資料表，這個檔案不是本程式的資料庫。請把檔案改名留存，把備份的檔案放到下面的位置，再試"
             "一次。";
    case Fault::kDuplicate:
      return "資料庫裡已經有相同的資料，不能重複存入。請換一個編號，或改用「修改」。";
    case Fault::kRelated:
      return "這筆資料和其他資料表有關聯：新增之前要先有它所屬的資料，刪除之前要先刪除用到它的資料。";
    case Fault::kEmpty:
      return "資料庫規定這個欄位一定要有內容，不能空白。請填好，再試一次。";
    case Fault::kTextTooLong:
      return "文字太長，超過欄位的長度。請縮短，再試一次。";
    case Fault::kNumber:
      return "數字太大，或者不是欄位可以存放的數字。請改正，再試一次。";
    case Fault::kCharacter:
      return "文字裡有這個資料庫檔案無法存放的字。請換成別的字，再試一次。";
    case Fault::kPrinter:
      return "印表機沒有接受列印工作。請檢查印表機的電源、連線和紙張，再試一次。";
    case Fault::kOther:
      break;
  }
  return "這項工作無法完成。請再試一次；還是不行，請把下面的說明交給維護人員。";
}

}  // namespace marlevo
