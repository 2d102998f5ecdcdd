// The few file operations that the pager needs, and the operating system's implementation of them. They are an
// interface, so that tests can put a disk under the pager that fails, fills up or loses its power.
//
// Every operation that fails throws PagerError with the system's reason. No operation waits for other programs, except
// Lock with `wait`.
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

// Identifies a file, by whatever name it is opened.
struct FileId {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  auto operator<=>(const FileId&) const = default;
};

// What shows, without reading a file, whether somebody has written to it. Two writes within one tick of the system's
// clock may leave the same stamp. Windows shows the time of another program's writes only when that program has closed
// the file.
struct FileStamp {
  FileId id;
  std::uint64_t size = 0;
  std::int64_t time = 0;  // of the last write, in the system's units
  bool named = true;      // false when the file was deleted, or replaced by another one, while it is open
  bool operator==(const FileStamp&) const = default;
};

// Locks between processes. They bind only programs that ask for them. A lock ends with its DiskFile, also when the
// process is killed. Example: the writer wants to flush while process R reads and process S is about to read. The
// writer takes kPending and waits for kContent, and S waits for kPending. R finishes; the writer gets kContent and
// releases kPending. S gets kPending and waits for kContent until the writer has changed the file.
enum class LockKind {
  kWriter,   // held, exclusively, by the process that may write to the file
  kPending,  // held while waiting for kContent, so that readers who come one after the other do not keep the writer out
  kContent,  // held shared while the file is being read, exclusively while it is being changed
};
enum class LockMode { kShared, kExclusive };

class DiskFile {
 public:
  virtual ~DiskFile() = default;

  // Fills `bytes` from `offset` on. Returns how many bytes were read, fewer than asked for only at the end of the file.
  virtual std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) = 0;
  // Writes all bytes. When it throws, any part of them may have been written.
  virtual void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
  // Reads what the file holds now in the place of each piece (less than the piece at the end of the file) and asks
  // `unchanged`. If it is true for all, writes all pieces and returns the stamp that the file has then; otherwise
  // writes nothing and returns nothing. On Windows no other program can write between the reading and the writing;
  // elsewhere one can, within some microseconds.
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
  // When it returns, what was written and truncated before is durable.
  virtual void Sync() = 0;
  virtual std::uint64_t Size() = 0;
  virtual bool Writable() const = 0;
  virtual FileStamp Stamp() = 0;

  // Returns false when another process holds the lock and `wait` is false.
  virtual bool Lock(LockKind kind, LockMode mode, bool wait) = 0;
  virtual void Unlock(LockKind kind) noexcept = 0;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // The absolute name of a file with all links followed, so that the journal beside the file is found by whatever name
  // the file is opened.
  virtual std::filesystem::path Resolve(const std::filesystem::path& path) = 0;
  // Opens an existing file, for reading only if it may not be written. Null when there is none.
  virtual std::unique_ptr<DiskFile> Open(const std::filesystem::path& path) = 0;
  // Makes a new file. Throws when the name is taken.
  virtual std::unique_ptr<DiskFile> Create(const std::filesystem::path& path) = 0;
  // The stamp of the file that has this name now; nothing when there is none. That file may be another one than was
  // opened by this name before.
  virtual std::optional<FileStamp> Look(const std::filesystem::path& path) = 0;
  // Removes a file unless another program uses it. True when there is no such file afterwards. What counts as use is
  // said in disk_file_posix.cpp and disk_file_windows.cpp.
  virtual bool RemoveUnused(const std::filesystem::path& path) = 0;
  // Does nothing when there is no such file.
  virtual void Remove(const std::filesystem::path& path) = 0;
  // An open file may be renamed. When `to` exists, `replace` says whether that file vanishes or Rename throws.
  virtual void Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) = 0;
  // When it returns, all files made, renamed and removed in `folder` before are durably so.
  virtual void SyncFolder(const std::filesystem::path& folder) = 0;
};

// The files of the operating system.
FileSystem& NativeFiles();

}  // namespace marlevo::pager
