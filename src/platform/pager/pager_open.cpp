// How a Pager comes to be: one for each file and process, on an existing file or on a new one.
#include <map>
#include <utility>

#include "platform/pager/journaled_file.h"
#include "platform/pager/pager.h"

namespace marlevo::pager {
namespace {

std::filesystem::path NewPath(const std::filesystem::path& path) {
  std::filesystem::path name = path;
  name += "-new";
  return name;
}

// Where the Pager of a file is remembered while it lives. The file system is part of the key, because the ids of one
// file system mean nothing to another.
std::weak_ptr<Pager>& PagerFor(FileSystem& files, FileId id) {
  static std::map<std::pair<FileSystem*, FileId>, std::weak_ptr<Pager>> pagers;
  std::erase_if(pagers, [](const auto& entry) { return entry.second.expired(); });
  return pagers[{&files, id}];
}

}  // namespace

std::shared_ptr<Pager> Pager::Open(const std::filesystem::path& path, const Probe& probe, FileSystem& files,
                                   Limits limits) {
  const std::filesystem::path name = files.Resolve(path);
  std::unique_ptr<DiskFile> opened = files.Open(name);
  if (!opened) {
    throw PagerError(path, "does not exist", Fault::kMissing);
  }
  const FileId id = opened->Stamp().id;
  if (std::shared_ptr<Pager> pager = PagerFor(files, id).lock(); pager && pager->IsCurrent()) {
    return pager;
  }

  auto file = std::make_unique<JournaledFile>(files, name, std::move(opened), std::filesystem::path());
  if (!file->BecomeWriter()) {
    file->LockForReading();
  }
  file->SetFormat(probe(file->Head()));
  file->UnlockAfterReading();
  std::shared_ptr<Pager> pager(new Pager(std::move(file), probe, limits));
  PagerFor(files, id) = pager;
  return pager;
}

std::shared_ptr<Pager> Pager::Create(const std::filesystem::path& path, PageFormat format, FileSystem& files,
                                     Limits limits) {
  const std::filesystem::path name = files.Resolve(path);
  if (files.Open(name)) {
    throw PagerError(path, "exists already");
  }
  const std::filesystem::path new_name = NewPath(name);
  if (const std::unique_ptr<DiskFile> left = files.Open(new_name)) {
    if (!left->Lock(LockKind::kWriter, LockMode::kExclusive, false)) {
      throw PagerError(path, "is being created by another program");
    }
    files.Remove(new_name);
  }
  if (const std::unique_ptr<DiskFile> left = files.Open(JournalPath(new_name)); left && LooksLikeJournal(*left)) {
    files.Remove(JournalPath(new_name));
  }
  auto file = std::make_unique<JournaledFile>(files, new_name, files.Create(new_name), name);
  const FileId id = file->Id();
  if (!file->BecomeWriter()) {
    throw PagerError(path, "is being created by another program");
  }
  file->SetFormat(std::move(format));
  std::shared_ptr<Pager> pager(new Pager(std::move(file), {}, limits));
  PagerFor(files, id) = pager;
  return pager;
}

}  // namespace marlevo::pager
