// make_database: makes an empty database file, or one filled by statements. See kUsage.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "platform/errors/operation_error.h"
#include "tools/make_database/new_database.h"

namespace {

constexpr char kUsage[] =
    "Usage: make_database [--jet3] PATH [STATEMENTS]\n"
    "       make_database --into PATH STATEMENTS\n"
    "\n"
    "Makes the database file PATH with the tables NUMERIC, CUSTOM_H and CUSTOM_D, empty.\n"
    "An existing file is never touched.\n"
    "  --jet3       in the format of Access 97, texts in code page 950, instead of that of Access 2000 to 2003\n"
    "  STATEMENTS   run these on the database: a UTF-8 file, one SQL statement a line\n"
    "  --into PATH  run them on an existing database instead\n"
    "  --help       this text\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 wrong use.\n";

constexpr marlevo::access::NewFile kJet3{.version = 3, .code_page = 950};

int Fail(const std::string& message) {
  std::fprintf(stderr, "make_database: %s\n", message.c_str());
  return 1;
}

int WrongUse() {
  std::fputs(kUsage, stderr);
  return 2;
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

int Run(const std::vector<std::filesystem::path>& arguments) {
  if (arguments.size() == 1 && arguments[0] == "--help") {
    std::fputs(kUsage, stdout);
    return 0;
  }
  const bool into = !arguments.empty() && arguments[0] == "--into";
  const bool jet3 = !arguments.empty() && arguments[0] == "--jet3";
  const std::size_t first = into || jet3 ? 1 : 0;
  const std::size_t count = arguments.size() - first;
  if (arguments.size() < first + (into ? 2 : 1) || count > 2 || Utf8(arguments[first]).starts_with("-")) {
    return WrongUse();
  }
  const std::filesystem::path& database = arguments[first];

  // Before anything is made: a list that cannot be read must not leave an empty database behind.
  std::ifstream statements;
  if (count == 2) {
    statements.open(arguments[first + 1], std::ios::binary);
    if (!statements || std::filesystem::is_directory(arguments[first + 1])) {
      return Fail(Utf8(arguments[first + 1]) + ": cannot be read");
    }
  }
  bool made = false;
  try {
    if (!into) {
      marlevo::MakeDatabase(database, jet3 ? kJet3 : marlevo::access::NewFile{});
      made = true;
    }
    if (count == 2) {
      marlevo::RunStatements(database, statements);
    }
    return 0;
  } catch (const std::exception& error) {
    if (made) {
      std::error_code ignored;
      std::filesystem::remove(database, ignored);  // half filled, it would stand in the way of the next try
    }
    return Fail(Utf8(database) + ": " + error.what());
  }
}

}  // namespace

// Windows gives file names in full only as wide texts.
#ifdef _WIN32
int wmain(int count, wchar_t** arguments)
#else
int main(int count, char** arguments)
#endif
{
  return Run({arguments + 1, arguments + count});
}
