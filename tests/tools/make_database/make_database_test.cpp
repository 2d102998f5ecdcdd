// The program as a user runs it. MAKE_DATABASE is its path.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/database/connection.h"
#include "support/scratch_folder.h"

namespace marlevo {
namespace {

struct Outcome {
  int status;
  std::string output;
};

Outcome Shell(const std::string& command) {
  std::FILE* pipe = popen(command.c_str(), "r");
  std::string output;
  std::array<char, 4096> bytes{};
  while (const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), pipe)) {
    output.append(bytes.data(), size);
  }
  const int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

class MakeDatabaseTest : public testing::Test {
 protected:
  std::string Quoted(const std::string& name) const {
    return std::string("'").append((folder_.Path() / name).string()).append("'");
  }
  void Write(const std::string& name, const std::string& text) const { std::ofstream(folder_.Path() / name) << text; }
  Outcome Make(const std::string& arguments, const std::string& redirection = "2>&1 >/dev/null") const {
    return Shell(std::string(MAKE_DATABASE) + " " + arguments + " " + redirection);
  }
  int Customers(const std::string& name) const {
    Connection connection(FileConnectionString(folder_.Path() / name));
    return static_cast<int>(connection.Open("SELECT COUNT(*) AS N FROM CUSTOM_H").Number("N"));
  }

  test::ScratchFolder folder_;
};

constexpr char kTwoCustomers[] =
    "\xEF\xBB\xBFINSERT INTO [CUSTOM_H] (CUSTOM_NO,CUSTOM_NAME) VALUES ('A01','王小明')\r\n"
    "\r\n"
    "INSERT INTO [CUSTOM_H] (CUSTOM_NO,CUSTOM_NAME) VALUES ('A02','陳')";

TEST_F(MakeDatabaseTest, MakesAndFillsDatabases) {
  EXPECT_EQ(Make(Quoted("empty.mdb")).status, 0);
  EXPECT_EQ(Customers("empty.mdb"), 0);
  Write("two.sql", kTwoCustomers);
  const Outcome made = Make(Quoted("two.mdb") + " " + Quoted("two.sql"), "2>&1");
  EXPECT_EQ(made.status, 0);
  EXPECT_EQ(made.output, "");
  EXPECT_EQ(Customers("two.mdb"), 2);
  EXPECT_EQ(Make("--into " + Quoted("two.mdb") + " " + Quoted("two.sql")).status, 0);
  EXPECT_EQ(Customers("two.mdb"), 4);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), 3);  // no journal is left
}

TEST_F(MakeDatabaseTest, SaysWhatIsWrongAndChangesNothing) {
  Write("there.mdb", "precious");
  Write("two.sql", kTwoCustomers);
  Write("bad.sql", "INSERT INTO [CUSTOM_H] (CUSTOM_NO) VALUES ('A01')\n\nINSERT INTO\n");
  EXPECT_EQ(Make(Quoted("there.mdb") + " " + Quoted("two.sql")).status, 1);
  EXPECT_EQ(std::filesystem::file_size(folder_.Path() / "there.mdb"), 8u);
  EXPECT_EQ(Make("--into " + Quoted("there.mdb") + " " + Quoted("two.sql")).status, 1);
  EXPECT_EQ(Make("--into " + Quoted("none.mdb") + " " + Quoted("two.sql")).status, 1);
  EXPECT_EQ(Make(Quoted("new.mdb") + " " + Quoted("none.sql")).status, 1);
  EXPECT_EQ(Make(Quoted("none/new.mdb")).status, 1);
  const Outcome bad = Make(Quoted("new.mdb") + " " + Quoted("bad.sql"));
  EXPECT_EQ(bad.status, 1);
  EXPECT_NE(bad.output.find("line 3"), std::string::npos) << bad.output;
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "none.mdb"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "new.mdb"));
  for (const char* wrong : {"", "--into", "--into a.mdb", "a b c", "--into a b c", "--check", "--copy a", "--check a b",
                            "--unknown", "-x a", "--jet3", "--jet3 --into a b"}) {
    const Outcome outcome = Make(wrong);
    EXPECT_EQ(outcome.status, 2) << wrong;
    EXPECT_NE(outcome.output.find("Usage"), std::string::npos) << wrong;
  }
  const Outcome help = Make("--help", "2>/dev/null");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("Usage"), std::string::npos);
}

TEST_F(MakeDatabaseTest, ChecksAndCopies) {
  Write("two.sql", kTwoCustomers);
  ASSERT_EQ(Make("--jet3 " + Quoted("two.mdb") + " " + Quoted("two.sql")).status, 0);
  Write("two.ldb", "left behind");
  Write("two.mdb-journal", "letters");
  const Outcome copied = Make("--copy " + Quoted("two.mdb") + " " + Quoted("copy.mdb"), "2>&1");
  EXPECT_EQ(copied.status, 0);
  EXPECT_EQ(copied.output, "copied and compared: 3 tables, 2 rows, 10 values\n");
  EXPECT_EQ(Customers("copy.mdb"), 2);
  for (const char* there : {"copy.mdb", "two.mdb"}) {
    EXPECT_EQ(Make("--copy " + Quoted("two.mdb") + " " + Quoted(there)).status, 1);
  }
  EXPECT_EQ(Make("--copy " + Quoted("none.mdb") + " " + Quoted("new.mdb")).status, 1);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "new.mdb"));
  EXPECT_EQ(Make("--check " + Quoted("two.mdb"), "2>&1").output, "sound\n");
  std::fstream(folder_.Path() / "two.mdb", std::ios::binary | std::ios::in | std::ios::out)
      .seekp(2 * 2048 + 12)
      .put('\x55');
  const std::string before = Shell("cat " + Quoted("two.mdb")).output;
  const Outcome faults = Make("--check " + Quoted("two.mdb"), "2>&1");
  EXPECT_EQ(faults.status, 1);
  EXPECT_NE(faults.output.find("MSysObjects has 11 rows but counts 85"), std::string::npos) << faults.output;
  EXPECT_EQ(Shell("cat " + Quoted("two.mdb")).output, before);
  EXPECT_TRUE(std::filesystem::exists(folder_.Path() / "two.ldb"));
  EXPECT_TRUE(std::filesystem::exists(folder_.Path() / "two.mdb-journal"));
}

}  // namespace
}  // namespace marlevo
