// What goes wrong with the database while the customer windows are open: each fault gives one error report, changes
// nothing that it should not, and the window goes on working.
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QProcess>
#include <cstdio>
#include <fstream>

#include "customer_database.h"
#include "customers/frmCustom.h"
#include "customers/frmCustom_CHK.h"
#include "customers/frmSave.h"
#include "draws/frmInput.h"
#include "platform/access/database.h"
#include "save_steps.h"
#include "support/largest_list.h"
#include "support/ticket_text.h"

namespace marlevo {
namespace {

// This test program once more, as another process that runs one of its disabled tests on the same database file.
class HelperProcess {
 public:
  // `test`: the name of a test Helper.DISABLED_<test>.
  HelperProcess(const QString& test, const std::filesystem::path& file) {
    // Not by qputenv, which takes bytes: on Windows Chinese names need more.
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

class FaultsTest : public CustomerDatabaseTest {
 protected:
  // Opens every window with a database in turn. Each opening is one step.
  static void OpenEachWindow(const std::string& connection_string, const ModalStep& step) {
    const CurrentList list;
    const std::vector<std::function<void()>> openings = {[&] { frmInput(nullptr, connection_string).exec(); },
                                                         [&] { frmCustom(nullptr, connection_string).exec(); },
                                                         [&] { frmSave(nullptr, connection_string, list).exec(); },
                                                         [&] { frmCustom_CHK(nullptr, connection_string).exec(); }};
    for (const auto& opening : openings) {
      WithModals([&] { RunInEvent(opening); }, {step});
    }
  }

  void Overwrite(std::uintmax_t from, std::uintmax_t length, char byte) {
    std::fstream file(file_, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(from));
    file << std::string(length, byte);
  }
};

TEST_F(FaultsTest, AFileThatCannotBeOpenedGivesAReportAndNoWindow) {
  const auto opens_with_report = [&](const std::string& connection_string, const char* reason) {
    OpenEachWindow(connection_string, ExpectErrorReport(reason, "繼續"));
  };
  opens_with_report(Opening().substr(0, Opening().rfind('=') + 1) + "wrong", "密碼不符");
  OpenEachWindow(Opening(), [](QWidget& window) { window.close(); });
  Overwrite(0, 64, '\0');
  opens_with_report(Opening(), "損壞");
  std::ofstream(file_).close();
  opens_with_report(Opening(), "損壞");
  std::filesystem::remove(file_);
  opens_with_report(Opening(), "找不到檔案");
  // Another program's file under the same password.
  access::Database::Create(file_, "qorvat", {{"OTHER", {{"A", access::ColumnType::kLong}}}});
  opens_with_report(Opening(), "缺少需要的資料表");
}

TEST_F(FaultsTest, DamagedPagesGiveAReportAndTheWindowStays) {
  AddCustomer({"A01", "王小明", "", "", ""});
  const std::uintmax_t healthy = std::filesystem::file_size(file_);
  AddRecord("A01", "20021005143012", std::vector<std::string>(3000, "0 25 1234"));
  ASSERT_GT(std::filesystem::file_size(file_), healthy + 65536);
  Overwrite(healthy + 32768, 32768, '\xAA');
  const Shown<frmCustom> window(Opening());
  WithModals([&] { PressRow(window, "mfgCustom_H", 0); }, {ExpectErrorReport("檔案已經損壞", "繼續")});
  EXPECT_EQ(RowsText(window, "lstRecord"), "");
  EXPECT_EQ(RowsText(window, "mfgCustom_H"), "A01|王小明|||\n");
  const Shown<frmCustom_CHK> check(Opening());
  Click(check, "Option1(2)");
  Press(check, "cmdCheck2", {ExpectErrorReport("4star.mdb", "繼續")});
  EXPECT_EQ(RowsText(check, "lstCheck"), "");
}

TEST_F(FaultsTest, AFileThatAnotherProcessWritesToCanBeReadUntilItIsFree) {
  AddCustomer({"A01", "王小明", "", "", ""});
  const CurrentList list = test::Lists({{0, "1234"}});
  auto other = std::make_unique<HelperProcess>("HoldsTheFile", file_);
  other->WaitFor("held");
  const Shown<frmSave> save(Opening(), list);
  EXPECT_EQ(RowsText(save, "mfgCustom_H"), "A01|王小明\n");
  Press(save, "cmdPrint", YesToSaving("A01", ExpectErrorReport("另一個程式", "繼續")));
  EXPECT_EQ(Tickets("A01"), "");
  other.reset();
  Press(save, "cmdPrint", YesToSaving("A01"));
  EXPECT_EQ(StoredOfSave("A01", list), 1U);
}

TEST_F(FaultsTest, AKillInTheMiddleOfASaveLeavesItsFirstRows) {
  const CurrentList list = LargestList();
  const int rounds = 8;
  qint64 whole_save = 0;  // milliseconds
  std::size_t cut_off = 0;
  for (int round = 0; round <= rounds; ++round) {
    const std::string number = QString("K%1").arg(round).toStdString();
    AddCustomer({number, "", "", "", ""});
    QElapsedTimer clock;
    HelperProcess saving("SavesTheLargestList", file_);
    saving.WaitFor("saving");
    clock.start();
    if (round == 0) {
      saving.WaitFor("saved");
      whole_save = clock.elapsed();
    } else {
      QTest::qWait(static_cast<int>(whole_save * round / rounds));
    }
    const bool reported = saving.Kill().contains("saved");

    const std::size_t stored = StoredOfSave(number, list);
    if (reported) {
      EXPECT_EQ(stored, 23000U) << "round " << round;
    }
    cut_off += stored < 23000U ? 1 : 0;
    Run(DeleteCustomer(number));  // so that the next round's customer is the first again
  }
  EXPECT_GT(cut_off, 0U) << "no kill came in the middle of a save";
}

// What the helper processes do. They are this program once more, with a test that does not run by itself.

TEST(Helper, DISABLED_HoldsTheFile) {
  Connection connection(HelperProcess::ConnectionString());
  connection.Execute("INSERT INTO [NUMERIC] (VOU_NO,NO1,NO2,NO3,NO4) VALUES (1,1,2,3,4)");
  HelperProcess::Say("held");
  HelperProcess::WaitForTheEnd();
}

TEST(Helper, DISABLED_SavesTheLargestList) {
  const CurrentList list = LargestList();
  const Shown<frmSave> window(HelperProcess::ConnectionString(), list);
  Press(window, "cmdPrint",
        {[](QWidget& question) {
           HelperProcess::Say("saving");
           dynamic_cast<QMessageBox&>(question).button(QMessageBox::Yes)->click();
         },
         [](QWidget&) {
           HelperProcess::Say("saved");
           HelperProcess::WaitForTheEnd();
         }});
}

}  // namespace
}  // namespace marlevo
