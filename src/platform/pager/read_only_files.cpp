#include "platform/pager/read_only_files.h"

#include <utility>

namespace marlevo::pager {
namespace {

[[noreturn]] void Refuse(const std::filesystem::path& path) {
  throw PagerError(path, "is only looked at", Fault::kDenied);
}

class ReadOnlyFile : public DiskFile {
 public:
  ReadOnlyFile(std::filesystem::path path, std::unique_ptr<DiskFile> file)
      : path_(std::move(path)), file_(std::move(file)) {}

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override { return file_->ReadAt(offset, bytes); }
  void WriteAt(std::uint64_t, std::span<const std::byte>) override { Refuse(path_); }
  void Truncate(std::uint64_t) override { Refuse(path_); }
  void Sync() override {}
  std::uint64_t Size() override { return file_->Size(); }
  bool Writable() const override { return false; }
  FileStamp Stamp() override { return file_->Stamp(); }
  bool Lock(LockKind kind, LockMode mode, bool wait) override { return file_->Lock(kind, mode, wait); }
  void Unlock(LockKind kind) noexcept override { file_->Unlock(kind); }

 private:
  std::filesystem::path path_;
  std::unique_ptr<DiskFile> file_;
};

}  // namespace

std::unique_ptr<DiskFile> ReadOnlyFiles::Open(const std::filesystem::path& path) {
  std::unique_ptr<DiskFile> file = files_.Open(path);
  return file == nullptr ? nullptr : std::make_unique<ReadOnlyFile>(path, std::move(file));
}

std::unique_ptr<DiskFile> ReadOnlyFiles::Create(const std::filesystem::path& path) {
  Refuse(path);
}
bool ReadOnlyFiles::RemoveUnused(const std::filesystem::path& path) {
  Refuse(path);
}
void ReadOnlyFiles::Remove(const std::filesystem::path& path) {
  Refuse(path);
}
void ReadOnlyFiles::Rename(const std::filesystem::path& from, const std::filesystem::path&, bool) {
  Refuse(from);
}
void ReadOnlyFiles::SyncFolder(const std::filesystem::path& folder) {
  Refuse(folder);
}

}  // namespace marlevo::pager
