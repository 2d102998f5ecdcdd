#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/pager/disk_file.h"

namespace marlevo::pager {
namespace {

Fault FaultOf(int code) {
  switch (code) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return Fault::kDiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
      return Fault::kDenied;
    default:
      return Fault::kDiskFailed;
  }
}

[[noreturn]] void Fail(const std::filesystem::path& path, const char* attempted) {
  const int code = errno;
  throw PagerError(path, std::string(attempted) + ": " + std::generic_category().message(code), FaultOf(code));
}

// A lock is one byte, locked far behind every page that the format allows.
constexpr off_t LockOffset(LockKind kind) {
  return 0x7fffff00 + static_cast<off_t>(kind);
}

FileStamp StampOf(const struct stat& status) {
  return {.id = {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)},
          .size = static_cast<std::uint64_t>(status.st_size),
          .time = std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec,
          .named = status.st_nlink > 0};
}

class PosixFile final : public DiskFile {
 public:
  PosixFile(std::filesystem::path path, int handle, bool writable)
      : path_(std::move(path)), handle_(handle), writable_(writable) {}
  PosixFile(const PosixFile&) = delete;
  PosixFile& operator=(const PosixFile&) = delete;
  ~PosixFile() override { close(handle_); }

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t n = pread(handle_, bytes.data() + done, bytes.size() - done, offset + done);
      if (n == 0) {
        break;
      }
      if (n > 0) {
        done += n;
      } else if (errno != EINTR) {
        Fail(path_, "cannot be read");
      }
    }
    return done;
  }

  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t n = pwrite(handle_, bytes.data() + done, bytes.size() - done, offset + done);
      if (n >= 0) {
        done += n;
      } else if (errno != EINTR) {
        Fail(path_, "cannot be written");
      }
    }
  }

  void Truncate(std::uint64_t size) override {
    if (ftruncate(handle_, size) != 0) {
      Fail(path_, "cannot be cut to its length");
    }
  }

  void Sync() override {
    if (fsync(handle_) != 0) {
      Fail(path_, "cannot be brought onto the disk");
    }
  }

  std::uint64_t Size() override { return Status().st_size; }
  bool Writable() const override { return writable_; }

  FileStamp Stamp() override { return StampOf(Status()); }

  // These locks (F_OFD_...) belong to the open file. Locks that belong to the process would end as soon as the process
  // closes any other handle of the same file.
  bool Lock(LockKind kind, LockMode mode, bool wait) override {
    struct flock lock = Range(kind, mode == LockMode::kShared ? F_RDLCK : F_WRLCK);
    while (fcntl(handle_, wait ? F_OFD_SETLKW : F_OFD_SETLK, &lock) != 0) {
      if (errno == EINTR) {
        continue;
      }
      if (!wait && (errno == EAGAIN || errno == EACCES)) {
        return false;
      }
      Fail(path_, "cannot be locked");
    }
    return true;
  }

  void Unlock(LockKind kind) noexcept override {
    struct flock lock = Range(kind, F_UNLCK);
    fcntl(handle_, F_OFD_SETLK, &lock);
  }

 private:
  static struct flock Range(LockKind kind, short type) {
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = LockOffset(kind);
    lock.l_len = 1;
    return lock;
  }

  struct stat Status() {
    struct stat status = {};
    if (fstat(handle_, &status) != 0) {
      Fail(path_, "cannot be looked at");
    }
    return status;
  }

  std::filesystem::path path_;
  int handle_;
  bool writable_;
};

class PosixFiles final : public FileSystem {
 public:
  std::filesystem::path Resolve(const std::filesystem::path& path) override {
    std::error_code error;
    std::filesystem::path real = std::filesystem::weakly_canonical(std::filesystem::absolute(path), error);
    if (error) {
      throw PagerError(path, error.message());
    }
    return real;
  }

  std::unique_ptr<DiskFile> Open(const std::filesystem::path& path) override {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
      if (errno == ENOENT || errno == ENOTDIR) {
        return nullptr;
      }
      Fail(path, "cannot be opened");
    }
    if (!S_ISREG(status.st_mode)) {
      throw PagerError(path, "is not a file", Fault::kDamaged);
    }
    // The superuser could write to a file that nobody has the right to write, but does not.
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0) {
      if (const int handle = open(path.c_str(), O_RDWR | O_CLOEXEC); handle >= 0) {
        return std::make_unique<PosixFile>(path, handle, true);
      }
      if (errno == ENOENT) {
        return nullptr;
      }
      if (errno != EACCES && errno != EROFS && errno != EPERM) {
        Fail(path, "cannot be opened");
      }
    }
    const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle < 0) {
      Fail(path, "cannot be opened");
    }
    return std::make_unique<PosixFile>(path, handle, false);
  }

  std::unique_ptr<DiskFile> Create(const std::filesystem::path& path) override {
    const int handle = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (handle < 0) {
      Fail(path, "cannot be created");
    }
    return std::make_unique<PosixFile>(path, handle, true);
  }

  std::optional<FileStamp> Look(const std::filesystem::path& path) override {
    struct stat status = {};
    if (stat(path.c_str(), &status) == 0) {
      return StampOf(status);
    }
    if (errno == ENOENT || errno == ENOTDIR) {
      return std::nullopt;
    }
    Fail(path, "cannot be looked at");
  }

  bool RemoveUnused(const std::filesystem::path& path) override {
    const int handle = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0) {
      return errno == ENOENT || errno == ENOTDIR;
    }
    const bool removed = !IsUsed(handle) && (unlink(path.c_str()) == 0 || errno == ENOENT);
    close(handle);
    return removed;
  }

  void Remove(const std::filesystem::path& path) override {
    if (unlink(path.c_str()) != 0 && errno != ENOENT) {
      Fail(path, "cannot be removed");
    }
  }

  void Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) override {
    int result = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), replace ? 0 : RENAME_NOREPLACE);
    if (result != 0 && !replace && (errno == EINVAL || errno == ENOSYS)) {
      // This file system cannot check and rename in one step.
      struct stat status = {};
      if (lstat(to.c_str(), &status) == 0) {
        throw PagerError(to, "exists already");
      }
      result = rename(from.c_str(), to.c_str());
    }
    if (result != 0) {
      Fail(to, "cannot get its name");
    }
  }

  void SyncFolder(const std::filesystem::path& folder) override {
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) {
      Fail(folder, "cannot be opened");
    }
    const int result = fsync(handle);
    const int code = errno;
    close(handle);
    errno = code;
    // EINVAL: this file system makes the names in its folders durable by itself.
    if (result != 0 && code != EINVAL) {
      Fail(folder, "cannot be brought onto the disk");
    }
  }

 private:
  // Another program uses a file when it has locked any part of it or, as far as the system tells, has it open. The
  // system gives a lease only while nobody else has the file open. Leases work for local files of the user's own; for
  // other files, such as those on a server, only locks show use.
  static bool IsUsed(int handle) {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    if (fcntl(handle, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK) {
      return true;
    }
    if (flock(handle, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
      return true;
    }
    // When another program opens the file while the lease lasts, the system sends this process a signal. SIGURG is
    // ignored by default; the usual signal would end the process.
    fcntl(handle, F_SETSIG, SIGURG);
    return fcntl(handle, F_SETLEASE, F_WRLCK) != 0 && errno == EAGAIN;
  }
};

}  // namespace

FileSystem& NativeFiles() {
  static PosixFiles files;
  return files;
}

}  // namespace marlevo::pager
