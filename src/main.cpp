// Builds the services, shows the board and ends the program.
#include <QScopeGuard>
#include <filesystem>
#include <optional>

#include "board/frmMarlevo.h"
#include "customers/frmCustom.h"
#include "customers/frmSave.h"
#include "draws/frmInput.h"
#include "platform/database/connection.h"
#include "printing/frmPrint.h"
#include "printing/frmPrintNote.h"
#include "printing/frmSetPrinter.h"
#include "printing/slip_settings_file.h"
#include "ui/application.h"
#include "ui/scrolling.h"

int main(int argc, char** argv) {
  marlevo::Application application(argc, argv);

  // Everything that lasts is kept beside the program.
  const std::filesystem::path folder = QCoreApplication::applicationDirPath().toStdU16String();
  const std::string database = marlevo::ConnectionString(folder);
  marlevo::BoardWindows windows;
  windows.customers = [database](QWidget* parent, const marlevo::StoredListShower& show_stored_list) {
    marlevo::frmCustom(parent, database, show_stored_list).exec();
  };
  windows.draws = [database](QWidget* parent) { marlevo::frmInput(parent, database).exec(); };
  windows.save = [database](QWidget* parent, const marlevo::CurrentList& list) {
    marlevo::frmSave(parent, database, list).exec();
  };
  windows.print = [folder](QWidget* parent, const marlevo::CurrentList& list) {
    marlevo::frmPrint(parent, list, folder).exec();
  };
  windows.print_note = [](QWidget* parent) { marlevo::frmPrintNote(parent).exec(); };
  windows.set_printer = [folder](QWidget* parent) { marlevo::frmSetPrinter(parent, folder).exec(); };
  windows.database_problem = [folder, database]() -> QString {
    const std::optional<marlevo::DatabaseError> refusal = marlevo::RefusalToOpen(database);
    if (!refusal) {
      return {};
    }
    return refusal->Kind() == marlevo::Fault::kMissing
               ? "找不到資料庫 4star.mdb，請把備份的檔案放到 " + QString::fromStdU16String(folder.u16string())
               : "資料庫 4star.mdb 無法開啟，按「客戶資料維護」可以看到原因和該怎麼做";
  };
  windows.load_slip_settings = [folder] { marlevo::LoadSlipSettings(folder, marlevo::SlipType::kFourDigit); };

  marlevo::frmMarlevo board(windows);
  QObject::connect(&board, &marlevo::frmMarlevo::Unloaded, [] { QCoreApplication::exit(0); });
  return application.Run([&board] {
    // Also when the settings cannot be loaded: the error report then stands over a board that can be used.
    const auto show = qScopeGuard([&board] {
      marlevo::FitScreen(board, marlevo::frmMarlevo::kComfortable);  // when the operator wants a smaller window
      board.showMaximized();
    });
    board.Form_Load();
  });
}
