// The few file operations that the pager stands on, and the system's own. An interface, so that tests can put a disk
// under the pager that fails, fills up or loses its power.
//
// Every operation throws PagerError with the system's reason; none waits except Lock when told to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/pager/pager_error.h"

namespace marlevo::pager {

// What stays the same whatever name a file is opened by.
struct FileId {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  auto operator<=>(const FileId&) const = default;
};

// What tells from outside whether somebody has written to a file. Two writes within one tick of the system's clock may
// leave the same stamp; Windows gives the time of another program's writes only when that program closes the file.
struct FileStamp {
  FileId id;
  std::uint64_t size = 0;
  std::int64_t time = 0;  // of the last write, in the system's units
  bool named = true;      // false when the file was deleted, or replaced by another one, while it is open
  bool operator==(const FileStamp&) const = default;
};

// Advisory locks between processes, each on one thing. A lock ends with its DiskFile, also when the process is killed.
enum class LockKind {
  kWriter,   // exclusive: the process that may write to the file
  kPending,  // taken before kContent by both sides, so that readers that come in a row cannot keep the writer out
  kContent,  // shared: the file is being read; exclusive: it is being changed
};
enum class LockMode { kShared, kExclusive };

class DiskFile {
 public:
  virtual ~DiskFile() = default;

  // Fills `bytes` from `offset`; returns how many there were, fewer only at the end of the file.
  virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) = 0;
  // Writes all of it. When it throws, any part of it may have been written.
  virtual void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
  // Writes all pieces if `unchanged` agrees with what stands in the place of each now, of which there is less at the
  // end of the file; otherwise nothing. Gives the stamp of the file with the pieces. Where locks bind every program no
  // other can write meanwhile; elsewhere it would have to do so within some microseconds.
  struct Piece {
    std::uint64_t offset;
    std::vector<std::byte> bytes;
  };
  using Unchanged = std::function<bool(const Piece& piece, std::span<const std::byte> now)>;
  virtual std::optional<FileStamp> Overwrite(const std::vector<Piece>& pieces, const Unchanged& unchanged) {
    for (const Piece& piece : pieces) {
      std::vector<std::byte> now(piece.bytes.size());
      now.resize(ReadAt(piece.offset, now));
      if (!unchanged(piece, now)) {
        return std::nullopt;
      }
    }
    for (const Piece& piece : pieces) {
      WriteAt(piece.offset, piece.bytes);
    }
    return Stamp();
  }
  virtual void Truncate(std::uint64_t size) = 0;
  // What was written and truncated before is durable when it returns.
  virtual void Sync() = 0;
  virtual std::uint64_t Size() = 0;
  virtual bool Writable() const = 0;
  virtual FileStamp Stamp() = 0;

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
  virtual std::unique_ptr<DiskFile> Open(const std::filesystem::path& path) = 0;
  // A new file; throws when the name is taken.
  virtual std::unique_ptr<DiskFile> Create(const std::filesystem::path& path) = 0;
  // The stamp of the file that has this name now, by whomever it was made; nothing when there is none.
  virtual std::optional<FileStamp> Look(const std::filesystem::path& path) = 0;
  // Removes a file that no other program uses; true as well when there is none. How use is told: see the systems'
  // implementations.
  virtual bool RemoveUnused(const std::filesystem::path& path) = 0;
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
