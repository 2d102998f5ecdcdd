// make_database: makes, fills, checks and copies database files. See kUsage.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "platform/access/database/copy.h"
#include "tools/make_database/new_database.h"

namespace {

constexpr char kUsage[] =
    "Usage: make_database [--jet3] PATH [STATEMENTS]\n"
    "       make_database --into PATH STATEMENTS\n"
    "       make_database --check PATH\n"
    "       make_database --copy OLD NEW\n"
    "\n"
    "Makes the database file PATH with the tables NUMERIC, CUSTOM_H and CUSTOM_D, empty.\n"
    "An existing file is never touched.\n"
    "  --jet3       in the format of Access 97, texts in code page 950, instead of that of Access 2000 to 2003\n"
    "  STATEMENTS   run these on the database: a UTF-8 file, one SQL statement a line\n"
    "  --into PATH  run them on an existing database instead\n"
    "  --check      look for faults in the structure of a database, which is not changed: \"sound\", or the faults\n"
    "  --copy       write a new database with the tables, rows, column properties and password of an old one, compare\n"
    "               both, and name what only Access can keep and is left out: some indexes, relationships, rules\n"
    "  --help       this text\n"
    "\n"
    "Exit status: 0 done or sound, 1 failed or faults, 2 wrong use.\n";

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

// Runs `work` and returns the exit status that `work` returns; says an exception on the error stream.
template <typename Work>
int CatchAndSay(const std::filesystem::path& subject, Work work) {
  try {
    return work();
  } catch (const std::exception& error) {
    return Fail(Utf8(subject) + ": " + error.what());
  }
}

int CheckStructure(const std::filesystem::path& path) {
  return CatchAndSay(path, [&] {
    const std::vector<std::string> faults = marlevo::FaultsOf(path);
    for (const std::string& fault : faults) {
      std::puts(fault.c_str());
    }
    if (faults.empty()) {
      std::puts("sound");
    }
    return faults.empty() ? 0 : 1;
  });
}

int Copy(const std::filesystem::path& from, const std::filesystem::path& to) {
  return CatchAndSay(from, [&] {
    const marlevo::access::CopyReport report = marlevo::access::CopyFile(from, to);
    for (const std::string& lost : report.left_out) {
      std::printf("left out: %s\n", lost.c_str());
    }
    std::printf("copied and compared: %zu tables, %zu rows, %zu values\n", report.tables, report.rows, report.values);
    return 0;
  });
}

int Make(const std::filesystem::path& database, const marlevo::access::NewFile& kind, std::istream* statements) {
  bool made = false;
  const int status = CatchAndSay(database, [&] {
    marlevo::MakeDatabase(database, kind);
    made = true;
    if (statements != nullptr) {
      marlevo::RunStatements(database, *statements);
    }
    return 0;
  });
  if (made && status != 0) {
    std::error_code ignored;
    std::filesystem::remove(database, ignored);  // a half filled file would make the next try fail
  }
  return status;
}

int Run(const std::vector<std::filesystem::path>& arguments) {
  const std::string option =
      !arguments.empty() && Utf8(arguments[0]).starts_with("-") ? Utf8(arguments[0]) : std::string();
  const std::vector<std::filesystem::path> paths(arguments.begin() + (option.empty() ? 0 : 1), arguments.end());
  for (const std::filesystem::path& path : paths) {
    if (Utf8(path).starts_with("-")) {
      return WrongUse();
    }
  }
  const std::size_t count = paths.size();
  if (option == "--help" && count == 0) {
    std::fputs(kUsage, stdout);
    return 0;
  }
  if (option == "--check" && count == 1) {
    return CheckStructure(paths[0]);
  }
  if (option == "--copy" && count == 2) {
    return Copy(paths[0], paths[1]);
  }
  const bool into = option == "--into" && count == 2;
  const bool make = (option.empty() || option == "--jet3") && (count == 1 || count == 2);
  if (!into && !make) {
    return WrongUse();
  }

  // The list of statements is opened first: when it cannot be read, no empty database must be left behind.
  std::ifstream statements;
  if (count == 2) {
    statements.open(paths[1], std::ios::binary);
    if (!statements || std::filesystem::is_directory(paths[1])) {
      return Fail(Utf8(paths[1]) + ": cannot be read");
    }
  }
  if (into) {
    return CatchAndSay(paths[0], [&] {
      marlevo::RunStatements(paths[0], statements);
      return 0;
    });
  }
  return Make(paths[0], option.empty() ? marlevo::access::NewFile{} : kJet3, count == 2 ? &statements : nullptr);
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
