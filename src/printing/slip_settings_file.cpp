#include "printing/slip_settings_file.h"

#include <QFile>
#include <QSaveFile>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace marlevo {

namespace {

constexpr char kSaving[] = "儲存列印設定";

QString QPath(const std::filesystem::path& path) {
  return QString::fromStdU16String(path.u16string());
}

[[noreturn]] void FailToRead(const std::filesystem::path& path, std::error_code error) {
  throw FileError("讀取列印設定", QPath(path).toStdString(), error.message(),
                  error == std::errc::permission_denied ? Fault::kDenied : Fault::kDiskFailed);
}

[[noreturn]] void FailToWrite(const QFileDevice& file) {
  const QFileDevice::FileError error = file.error();
  // Qt reports a full disk as a resource that has run out.
  const Fault kind = error == QFileDevice::ResourceError                                         ? Fault::kDiskFull
                     : error == QFileDevice::OpenError || error == QFileDevice::PermissionsError ? Fault::kDenied
                                                                                                 : Fault::kDiskFailed;
  throw FileError(kSaving, file.fileName().toStdString(), file.errorString().toStdString(), kind);
}

}  // namespace

void LoadSlipSettings(const std::filesystem::path& folder, SlipType type) {
  const std::filesystem::path path = folder / SlipFileName(type);
  std::error_code error;
  const auto found = std::filesystem::status(path, error).type();
  if (found == std::filesystem::file_type::none || found == std::filesystem::file_type::unknown) {
    FailToRead(path, error);
  }
  if (found != std::filesystem::file_type::regular) {
    // Reading a device or a pipe could go on for ever.
    SlipSettings() = {};
    return;
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    FailToRead(path, std::error_code(errno, std::generic_category()));
  }
  const SlipPrinterSettings settings = ReadSlipSettings(file);
  if (file.bad()) {
    FailToRead(path, std::error_code(errno, std::generic_category()));
  }
  SlipSettings() = settings;
}

void SaveSlipSettings(const std::filesystem::path& folder, SlipType type,
                      const std::array<std::string, kSlipFields>& values) {
  const std::filesystem::path path = folder / SlipFileName(type);
  QFile file(QPath(path));
  if (file.exists() && !std::filesystem::is_regular_file(path)) {
    throw FileError(kSaving, file.fileName().toStdString(), "這裡有同名的資料夾或裝置，請移走，再試一次。",
                    Fault::kExplained);
  }
  const QByteArray text = QByteArray::fromStdString(SlipSettingsText(values));
  QSaveFile replacement(file.fileName());
  if (replacement.open(QIODevice::WriteOnly)) {
    // commit() does not fail when the disk took only a part of the text; flush() does.
    if (replacement.write(text) < 0 || !replacement.flush()) {
      FailToWrite(replacement);
    }
    if (replacement.commit()) {
      return;
    }
  }
  if (!file.exists()) {
    FailToWrite(replacement);
  }
  if (!file.open(QIODevice::ReadWrite) || file.write(text) < 0 || !file.flush() || !file.resize(text.size())) {
    FailToWrite(file);
  }
}

}  // namespace marlevo
