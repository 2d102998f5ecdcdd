#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "platform/pager/disk_file.h"

namespace marlevo::pager {
namespace {

std::string Reason(DWORD code) {
  wchar_t wide[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, wide,
                                static_cast<DWORD>(std::size(wide)), nullptr);
  while (length > 0 && (wide[length - 1] == L'\r' || wide[length - 1] == L'\n' || wide[length - 1] == L' ')) {
    --length;
  }
  std::string text(length * 3, '\0');
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(length), text.data(),
                                        static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(std::max(bytes, 0));
  return text.empty() ? "error " + std::to_string(code) : text;
}

constexpr DWORD kQuotaExceeded = 1295;  // ERROR_DISK_QUOTA_EXCEEDED, which MinGW's headers lack
constexpr DWORD kDeletePending = 303;   // ERROR_DELETE_PENDING

bool IsMissing(DWORD code) {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

Fault FaultOf(DWORD code) {
  switch (code) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kQuotaExceeded:
    case ERROR_FILE_TOO_LARGE:
      return Fault::kDiskFull;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
      return Fault::kDenied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return Fault::kInUse;
    default:
      return Fault::kDiskFailed;
  }
}

[[noreturn]] void Fail(const std::filesystem::path& path, const char* attempted) {
  const DWORD code = GetLastError();
  throw PagerError(path, std::string(attempted) + ": " + Reason(code), FaultOf(code));
}

OVERLAPPED At(std::uint64_t offset) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return place;
}

// A lock is one byte, locked far behind every page that the format allows, because Windows lets no other program read a
// locked byte.
OVERLAPPED LockPlace(LockKind kind) {
  return At(0x7fffff00U + static_cast<std::uint64_t>(kind));
}

// One call moves at most this much.
constexpr std::size_t kMaxTransfer = 1U << 24;

FileStamp StampOf(HANDLE handle, const std::filesystem::path& path) {
  BY_HANDLE_FILE_INFORMATION known = {};
  FILE_STANDARD_INFO standard = {};
  if (!GetFileInformationByHandle(handle, &known) ||
      !GetFileInformationByHandleEx(handle, FileStandardInfo, &standard, sizeof standard)) {
    Fail(path, "cannot be looked at");
  }
  const auto whole = [](DWORD high, DWORD low) { return (static_cast<std::uint64_t>(high) << 32) | low; };
  return {.id = {known.dwVolumeSerialNumber, whole(known.nFileIndexHigh, known.nFileIndexLow)},
          .size = whole(known.nFileSizeHigh, known.nFileSizeLow),
          .time = static_cast<std::int64_t>(
              whole(known.ftLastWriteTime.dwHighDateTime, known.ftLastWriteTime.dwLowDateTime)),
          .named = !standard.DeletePending && standard.NumberOfLinks > 0};
}

class WindowsFile final : public DiskFile {
 public:
  // The file closes the handle.
  static std::unique_ptr<WindowsFile> Of(const std::filesystem::path& path, HANDLE handle, bool writable) {
    auto file = std::make_unique<WindowsFile>(path, handle, writable);
    file->volume_ = StampOf(handle, path).id.volume;
    return file;
  }
  WindowsFile(std::filesystem::path path, HANDLE handle, bool writable)
      : path_(std::move(path)), handle_(handle), writable_(writable) {}
  WindowsFile(const WindowsFile&) = delete;
  WindowsFile& operator=(const WindowsFile&) = delete;
  ~WindowsFile() override { CloseHandle(handle_); }

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      OVERLAPPED place = At(offset + done);
      DWORD n = 0;
      const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMaxTransfer));
      if (!ReadFile(handle_, bytes.data() + done, wanted, &n, &place)) {
        if (GetLastError() == ERROR_HANDLE_EOF) {
          break;
        }
        Fail(path_, "cannot be read");
      }
      if (n == 0) {
        break;
      }
      done += n;
    }
    return done;
  }

  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      OVERLAPPED place = At(offset + done);
      DWORD n = 0;
      const auto wanted = static_cast<DWORD>(std::min(bytes.size() - done, kMaxTransfer));
      if (!WriteFile(handle_, bytes.data() + done, wanted, &n, &place)) {
        Fail(path_, "cannot be written");
      }
      done += n;
    }
  }

  // Windows lets no other program write to locked bytes, whether it asks for locks or not.
  std::optional<FileStamp> Overwrite(const std::vector<Piece>& pieces, const Unchanged& unchanged) override {
    const std::uint64_t from = pieces.front().offset;
    const auto size = static_cast<DWORD>(pieces.back().offset + pieces.back().bytes.size() - from);
    OVERLAPPED place = At(from);
    if (!LockFileEx(handle_, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, size, 0, &place)) {
      Fail(path_, "cannot be written");
    }
    struct Unlock {
      HANDLE handle;
      DWORD size;
      OVERLAPPED place;
      ~Unlock() { UnlockFileEx(handle, 0, size, 0, &place); }
    } unlock{handle_, size, At(from)};
    return DiskFile::Overwrite(pieces, unchanged);
  }

  void Truncate(std::uint64_t size) override {
    FILE_END_OF_FILE_INFO end = {};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    if (!SetFileInformationByHandle(handle_, FileEndOfFileInfo, &end, sizeof end)) {
      Fail(path_, "cannot be cut to its length");
    }
  }

  void Sync() override {
    if (!FlushFileBuffers(handle_)) {
      Fail(path_, "cannot be brought onto the disk");
    }
  }

  std::uint64_t Size() override {
    LARGE_INTEGER size = {};
    if (!GetFileSizeEx(handle_, &size)) {
      Fail(path_, "cannot be looked at");
    }
    return size.QuadPart;
  }

  bool Writable() const override { return writable_; }

  FileStamp Stamp() override {
    FileStamp stamp = StampOf(handle_, path_);
    stamp.id.volume = volume_;
    return stamp;
  }

  bool Lock(LockKind kind, LockMode mode, bool wait) override {
    OVERLAPPED place = LockPlace(kind);
    const DWORD flags = (mode == LockMode::kExclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0) |
                        (wait ? 0 : static_cast<DWORD>(LOCKFILE_FAIL_IMMEDIATELY));
    if (LockFileEx(handle_, flags, 0, 1, 0, &place)) {
      return true;
    }
    const DWORD code = GetLastError();
    if (!wait && (code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING)) {
      return false;
    }
    Fail(path_, "cannot be locked");
  }

  void Unlock(LockKind kind) noexcept override {
    OVERLAPPED place = LockPlace(kind);
    UnlockFileEx(handle_, 0, 1, 0, &place);
  }

 private:
  std::filesystem::path path_;
  HANDLE handle_;
  bool writable_;
  // As it was when the file was opened: Wine no longer tells the volume of a file that is renamed while it is open, and
  // the file would look like another one.
  std::uint64_t volume_ = 0;
};

// Other programs may open, rename and remove a file that is open here: it is the locks that decide who may write, and
// this program itself renames a new file while it is open.
HANDLE OpenHandle(const std::filesystem::path& path, DWORD access, DWORD disposition) {
  return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, disposition,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

class WindowsFiles final : public FileSystem {
 public:
  std::filesystem::path Resolve(const std::filesystem::path& path) override {
    std::error_code error;
    std::filesystem::path real = std::filesystem::weakly_canonical(std::filesystem::absolute(path), error);
    // On some network drives Windows cannot tell the final name of a file; then the given name is used.
    return error ? std::filesystem::absolute(path) : real;
  }

  std::unique_ptr<DiskFile> Open(const std::filesystem::path& path) override {
    HANDLE handle = OpenHandle(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
    if (handle != INVALID_HANDLE_VALUE) {
      return WindowsFile::Of(path, handle, true);
    }
    const DWORD code = GetLastError();
    if (IsMissing(code)) {
      return nullptr;
    }
    if (code != ERROR_ACCESS_DENIED && code != ERROR_WRITE_PROTECT && code != ERROR_SHARING_VIOLATION) {
      Fail(path, "cannot be opened");
    }
    handle = OpenHandle(path, GENERIC_READ, OPEN_EXISTING);
    if (handle == INVALID_HANDLE_VALUE) {
      Fail(path, "cannot be opened");
    }
    return WindowsFile::Of(path, handle, false);
  }

  std::unique_ptr<DiskFile> Create(const std::filesystem::path& path) override {
    HANDLE handle = OpenHandle(path, GENERIC_READ | GENERIC_WRITE, CREATE_NEW);
    if (handle == INVALID_HANDLE_VALUE) {
      Fail(path, "cannot be created");
    }
    return WindowsFile::Of(path, handle, true);
  }

  std::optional<FileStamp> Look(const std::filesystem::path& path) override {
    HANDLE handle = OpenHandle(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    if (handle == INVALID_HANDLE_VALUE) {
      const DWORD code = GetLastError();
      // A file that was deleted while it is open may keep its name until it is closed, and can no longer be opened.
      if (IsMissing(code) || code == ERROR_ACCESS_DENIED || code == kDeletePending) {
        return std::nullopt;
      }
      Fail(path, "cannot be looked at");
    }
    return WindowsFile::Of(path, handle, false)->Stamp();
  }

  // Another program uses a file as long as it has the file open, with locks or without. Windows gives a handle that is
  // shared with nobody only when there is no other handle.
  bool RemoveUnused(const std::filesystem::path& path) override {
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES && IsMissing(GetLastError())) {
      return true;
    }
    HANDLE handle = CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
      return IsMissing(GetLastError());
    }
    CloseHandle(handle);
    return true;
  }

  void Remove(const std::filesystem::path& path) override {
    if (!DeleteFileW(path.c_str()) && GetLastError() != ERROR_FILE_NOT_FOUND) {
      Fail(path, "cannot be removed");
    }
  }

  void Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) override {
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? static_cast<DWORD>(MOVEFILE_REPLACE_EXISTING) : 0);
    if (!MoveFileExW(from.c_str(), to.c_str(), flags)) {
      Fail(to, "cannot get its name");
    }
  }

  // Windows makes the names in its folders durable by itself.
  void SyncFolder(const std::filesystem::path&) override {}
};

}  // namespace

FileSystem& NativeFiles() {
  static WindowsFiles files;
  return files;
}

}  // namespace marlevo::pager
