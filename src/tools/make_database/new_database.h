// How a database file for this system is made, filled and checked, outside of the system itself.
//
//   NUMERIC    VOU_NO, NO1, NO2, NO3, NO4                                   Long
//   CUSTOM_H   CUSTOM_NO Text 50; CUSTOM_NAME Text 100; TEL1, TEL2 Text 50; MEMO1 Text 255
//   CUSTOM_D   CUSTOM_NO Text 50; SAL_DATE Text 14; PLAY_MODE Long; PLAY_AMT Double; PLAY_SEQ, NO1, NO2, NO3, NO4 Long
//
// Text sizes are characters, a Chinese one counting as one (in Jet 3 as two); unused room costs nothing. 255 is the
// format's most. Long holds draw numbers up to 2147483647. The stake is a Double because it is the one number that may
// have a fraction: a Double keeps every whole amount exactly and gives every fraction back as it was typed.
#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <vector>

#include "platform/access/database/database.h"

namespace marlevo {

// The three tables.
std::vector<access::TableSchema> NewTables();

// Makes a file with the three tables, empty, and the system's password. Never over an existing file.
// access::AccessError or a pager's error otherwise.
void MakeDatabase(const std::filesystem::path& file, access::NewFile kind = {});

// Runs UTF-8 statements, one a line, through Connection::Execute, and makes them durable. Blank lines are skipped. At
// the first that fails: DatabaseError with the number of its line in the reason; those before it have been executed.
void RunStatements(const std::filesystem::path& file, std::istream& statements);

// Structural faults, none when the file is sound (see access::Database::Check). Whatever password the file has. Nothing
// is changed: also an interrupted change that a journal could undo is only an error. access::AccessError or a pager's.
std::vector<std::string> FaultsOf(const std::filesystem::path& file);

}  // namespace marlevo
