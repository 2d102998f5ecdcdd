#include "platform/database/connection_string.h"

#include <gtest/gtest.h>

#include "platform/base/operation_error.h"

namespace marlevo {
namespace {

TEST(ConnectionString, NamesTheFileInTheFolder) {
  const std::string head = "Provider=Microsoft.Jet.OLEDB.3.51;Persist Security Info=False;Data Source=";
  const std::string tail = ";Jet OLEDB:Database Password=qorvat";
#ifdef _WIN32
  EXPECT_EQ(ConnectionString(u8"C:/彩券"), head + "C:\\彩券\\4star.mdb" + tail);
  EXPECT_EQ(ConnectionString("C:\\"), head + "C:\\4star.mdb" + tail);
#else
  EXPECT_EQ(ConnectionString(u8"/opt/彩券"), head + "/opt/彩券/4star.mdb" + tail);
  EXPECT_EQ(ConnectionString("/opt/"), head + "/opt/4star.mdb" + tail);
  EXPECT_EQ(ConnectionString("/"), head + "/4star.mdb" + tail);
#endif
}

TEST(ParseConnectionString, TakesWhatConnectionStringGives) {
  for (const std::string folder : {"x", "a b;c", "x;y=z", "a=b", "\"a\";'b", "'", "彩券"}) {
    const std::filesystem::path file = std::filesystem::path(std::u8string(folder.begin(), folder.end())) / "4star.mdb";
    const std::u8string expected = std::filesystem::path(file).make_preferred().u8string();
    const DataSource source = ParseConnectionString(FileConnectionString(file));
    EXPECT_EQ(source.file, std::string(expected.begin(), expected.end()));
    EXPECT_EQ(source.password, "qorvat");
  }
  EXPECT_EQ(ParseConnectionString(FileConnectionString("x") + ";Code Page=936").code_page, 936);
  EXPECT_EQ(ParseConnectionString("DATA SOURCE='x;.mdb';;provider=microsoft.jet.oledb.3.51;").file, "x;.mdb");
}

TEST(ParseConnectionString, RefusesWhatItCannotOpen) {
  for (const char* text :
       {"", "x", "Provider=Microsoft.Jet.OLEDB.3.51", "Provider=Microsoft.Jet.OLEDB.3.51;x;Data Source=x.mdb",
        "Provider=Microsoft.Jet.OLEDB.3.51;Data Source=x;y.mdb", "Data Source=x.mdb",
        "Provider=SQLOLEDB;Data Source=x.mdb", "Provider=Microsoft.Jet.OLEDB.3.51;Data Source=",
        "Provider=Microsoft.Jet.OLEDB.3.51;Data Source=x.mdb;Jet OLEDB:Database Pasword=secret",
        "Provider=Microsoft.Jet.OLEDB.3.51;Data Source=x.mdb;Code Page=big5"}) {
    EXPECT_THROW(ParseConnectionString(text), DatabaseError) << text;
  }
}

}  // namespace
}  // namespace marlevo
