// Files that a program reads and certainly does not change. Each file says that it may not be written, so that the
// pager neither plays a journal back into it nor becomes its writer.
#pragma once

#include "platform/pager/disk_file.h"

namespace marlevo::pager {

class ReadOnlyFiles : public FileSystem {
 public:
  // `files` outlives this, and this outlives every Pager that was opened with it.
  explicit ReadOnlyFiles(FileSystem& files = NativeFiles()) : files_(files) {}

  std::filesystem::path Resolve(const std::filesystem::path& path) override { return files_.Resolve(path); }
  std::unique_ptr<DiskFile> Open(const std::filesystem::path& path) override;
  std::optional<FileStamp> Look(const std::filesystem::path& path) override { return files_.Look(path); }
  // All operations below throw.
  std::unique_ptr<DiskFile> Create(const std::filesystem::path& path) override;
  bool RemoveUnused(const std::filesystem::path& path) override;
  void Remove(const std::filesystem::path& path) override;
  void Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) override;
  void SyncFolder(const std::filesystem::path& folder) override;

 private:
  FileSystem& files_;
};

}  // namespace marlevo::pager
