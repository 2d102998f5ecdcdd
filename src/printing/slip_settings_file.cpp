#include "printing/slip_settings_file.h"

#include <QFileInfo>
#include <QSaveFile>

namespace marlevo {

namespace {

constexpr qint64 kMostBytes = 64 * 1024;

QString FilePath(const std::filesystem::path& folder, std::string_view slip_name) {
  const std::string name = slip_name.empty() ? "4Star" : std::string(slip_name);
  return QString::fromStdU16String((folder / (name + ".ini")).u16string());
}

[[noreturn]] void Fail(const char* attempted, const QString& path, const QFileDevice& file) {
  const QFileDevice::FileError error = file.error();
  // What Qt runs out of while it writes is room on the disk.
  const Fault kind = error == QFileDevice::ResourceError                                         ? Fault::kDiskFull
                     : error == QFileDevice::OpenError || error == QFileDevice::PermissionsError ? Fault::kDenied
                                                                                                 : Fault::kDiskFailed;
  throw FileError(attempted, path.toStdString(), file.errorString().toStdString(), kind);
}

}  // namespace

void LoadSlipSettings(const std::filesystem::path& folder, std::string_view slip_name) {
  SlipSettings() = {};
  const QString path = FilePath(folder, slip_name);
  if (!QFileInfo(path).isFile()) {
    return;
  }
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    Fail("讀取列印設定", path, file);
  }
  SlipSettings() = ParseSlipSettings(file.read(kMostBytes).toStdString());
}

void SaveSlipSettings(const std::filesystem::path& folder, std::string_view slip_name,
                      const std::array<std::string, kSlipFields>& values) {
  const QString path = FilePath(folder, slip_name);
  QSaveFile file(path);
  // Flushed apart: a disk that takes only a part of the text would not fail the commit.
  if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray::fromStdString(SlipSettingsText(values))) < 0 ||
      !file.flush() || !file.commit()) {
    Fail("儲存列印設定", path, file);
  }
}

}  // namespace marlevo
