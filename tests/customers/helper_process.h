// This test program once more, as another process that runs one of its disabled tests on the same database file.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QString>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/database/connection_string.h"

namespace marlevo {

class HelperProcess {
 public:
  // `test`: the name of a test Helper.DISABLED_<test>.
  HelperProcess(const QString& test, const std::filesystem::path& file) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kFile, QString::fromStdString(FileConnectionString(file)));
    process_.setProcessEnvironment(environment);
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(QCoreApplication::applicationFilePath(),
                   {"--gtest_also_run_disabled_tests", "--gtest_filter=Helper.DISABLED_" + test});
  }
  ~HelperProcess() { Kill(); }

  // Fails the test when the process does not say so within a minute.
  void WaitFor(const char* word) {
    const QDeadlineTimer end(60'000);
    while (!said_.contains(Line(word)) && !end.hasExpired() && process_.state() != QProcess::NotRunning) {
      process_.waitForReadyRead(1000);
      said_ += process_.readAll();
    }
    EXPECT_TRUE(said_.contains(Line(word))) << said_.toStdString();
  }

  // Ends the process where it stands. All that it has said.
  QByteArray Kill() {
    process_.kill();
    process_.waitForFinished();
    return said_ += process_.readAll();
  }

  // For the helper itself.
  static std::string ConnectionString() { return qEnvironmentVariable(kFile).toStdString(); }
  static void Say(const char* word) {
    std::puts(Line(word).constData());
    std::fflush(stdout);
  }
  // Until the other process kills this one or is gone itself.
  static void WaitForTheEnd() { std::getchar(); }

 private:
  static constexpr const char* kFile = "MARLEVO_TEST_DATABASE";

  static QByteArray Line(const char* word) { return QByteArray("helper: ") + word; }

  QProcess process_;
  QByteArray said_;
};

}  // namespace marlevo
