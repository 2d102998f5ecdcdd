// Builds and reads connection strings, which name a database file and its password. All texts are UTF-8.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace marlevo {

// The string that opens `4star.mdb` in `folder` (the executable's folder), with the built-in password:
// "Provider=...;Persist Security Info=False;Data Source=<folder><separator>4star.mdb;Jet OLEDB:Database Password=...".
// The separator is the system's own and is not doubled when the folder ends in one (a drive root). A path with a ";"
// stands in double quotes, as connection strings have it.
std::string ConnectionString(const std::filesystem::path& folder);

// The connection string for any other file.
std::string FileConnectionString(const std::filesystem::path& file);

// What a connection string says.
struct DataSource {
  std::string file;
  std::string password;
  std::optional<int> code_page;  // see access::OpenOptions
};

// Reads a connection string. Besides the keys above it may have "Code Page=936" and the like, for an old file whose own
// label of the code page is wrong. Keys stand in any order and letter case; a value in single or double quotes may
// contain ";". Throws DatabaseError when the provider is another one, when there is no data source, and for an unknown
// key.
DataSource ParseConnectionString(const std::string& connection_string);

}  // namespace marlevo
