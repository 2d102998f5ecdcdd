#include "platform/database/backup.h"

#include <deque>
#include <memory>
#include <string>
#include <utility>

#include "platform/access/database/database.h"
#include "platform/pager/pager_error.h"

namespace marlevo {

namespace {

// A file that is called NAME-new until it gets its name, and vanishes when it never gets it.
class UnnamedFile {
 public:
  explicit UnnamedFile(std::filesystem::path name) : name_(std::move(name)), path_(name_) {
    path_ += "-new";
    files_.Remove(path_);  // left by a backup that was killed
  }
  UnnamedFile(const UnnamedFile&) = delete;
  UnnamedFile& operator=(const UnnamedFile&) = delete;
  ~UnnamedFile() {
    try {
      if (path_ != name_) {
        files_.Remove(path_);
      }
    } catch (const pager::PagerError&) {
      // The next backup of that name removes it.
    }
  }

  const std::filesystem::path& Path() const { return path_; }

  void TakeName() {
    files_.Rename(path_, name_, true);
    path_ = name_;
    files_.SyncFolder(files_.Resolve(name_).parent_path());
  }

 private:
  pager::FileSystem& files_ = pager::NativeFiles();
  std::filesystem::path name_;
  std::filesystem::path path_;  // where the file is now
};

std::vector<std::byte> Content(const std::filesystem::path& path) {
  const std::unique_ptr<pager::DiskFile> file = pager::NativeFiles().Open(path);
  if (file == nullptr) {
    throw pager::PagerError(path, "does not exist", Fault::kMissing);
  }
  std::vector<std::byte> content(file->Size());
  content.resize(file->ReadAt(0, content));
  return content;
}

void CopyContent(const std::filesystem::path& from, const std::filesystem::path& to) {
  const std::vector<std::byte> content = Content(from);
  {
    const std::unique_ptr<pager::DiskFile> copy = pager::NativeFiles().Create(to);
    copy->WriteAt(0, content);
    copy->Sync();
  }
  if (Content(to) != content) {
    throw pager::PagerError(to, "the copy is not like the original", Fault::kDiskFailed);
  }
}

}  // namespace

void BackUp(const FileCopy& database, const std::vector<FileCopy>& others) {
  constexpr char kBackingUp[] = "備份";
  try {
    std::deque<UnnamedFile> copies;
    access::Database::Open(database.from, {.password = {}, .code_page = {}, .any_password = true})
        .CopyTo(copies.emplace_back(database.to).Path());
    for (const FileCopy& other : others) {
      CopyContent(other.from, copies.emplace_back(other.to).Path());
    }
    for (UnnamedFile& copy : copies) {
      copy.TakeName();
    }
  } catch (const pager::PagerError& error) {
    throw FileError(kBackingUp, pager::Utf8(error.Path()), error.what(), error.Kind(), "備份沒有完成。");
  } catch (const access::AccessError& error) {
    throw FileError(kBackingUp, pager::Utf8(database.from), error.what(), error.Kind(), "備份沒有完成。");
  }
}

}  // namespace marlevo
