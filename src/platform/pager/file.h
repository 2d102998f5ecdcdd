// The few file operations that the pager stands on, and the system's own. An interface, so that tests can put a disk
// under the pager that fails, fills up or loses its power.
//
// Every operation throws PagerError with the system's reason; none waits except Lock when told to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

#include "platform/pager/pager_error.h"

namespace marlevo::pager {

// What stays the same whatever name a file is opened by.
struct FileId {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  auto operator<=>(const FileId&) const = default;
};

// Advisory locks between processes, each on one thing. A lock ends with its File, also when the process is killed.
enum class LockKind {
  kWriter,   // exclusive: the process that may write to the file
  kPending,  // taken before kContent by both sides, so that readers that come in a row cannot keep the writer out
  kContent,  // shared: the file is being read; exclusive: it is being changed
};
enum class LockMode { kShared, kExclusive };

class File {
 public:
  virtual ~File() = default;

  // Fills `bytes` from `offset`; returns how many there were, fewer only at the end of the file.
  virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) = 0;
  // Writes all of it. When it throws, any part of it may have been written.
  virtual void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
  virtual void Truncate(std::uint64_t size) = 0;
  // What was written and truncated before is durable when it returns.
  virtual void Sync() = 0;
  virtual std::uint64_t Size() = 0;
  virtual bool Writable() const = 0;
  virtual FileId Id() = 0;

  // False when another process holds it and `wait` is not set.
  virtual bool Lock(LockKind kind, LockMode mode, bool wait) = 0;
  virtual void Unlock(LockKind kind) noexcept = 0;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // The one absolute name of a file, links followed: what stands beside the file has to be found by every name of it.
  virtual std::filesystem::path Resolve(const std::filesystem::path& path) = 0;
  // An existing file, for reading only if it may not be written; null when there is none.
  virtual std::unique_ptr<File> Open(const std::filesystem::path& path) = 0;
  // A new file; throws when the name is taken.
  virtual std::unique_ptr<File> Create(const std::filesystem::path& path) = 0;
  // Nothing happens when there is none.
  virtual void Remove(const std::filesystem::path& path) = 0;
  // An open file may be renamed. With `replace` a file of the new name vanishes, without it throws.
  virtual void Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) = 0;
  // The names made, changed and removed in `folder` are durable when it returns.
  virtual void SyncFolder(const std::filesystem::path& folder) = 0;
};

// The system's own files.
FileSystem& NativeFiles();

}  // namespace marlevo::pager
