// How a database file for this system is made, filled and checked, outside of the system itself.
//
//   NUMERIC    VOU_NO, NO1, NO2, NO3, NO4                                   Long
//   CUSTOM_H   CUSTOM_NO Text 50; CUSTOM_NAME Text 100; TEL1, TEL2 Text 50; MEMO1 Text 255
//   CUSTOM_D   CUSTOM_NO Text 50; SAL_DATE Text 14; PLAY_MODE Long; PLAY_AMT Double; PLAY_SEQ, NO1, NO2, NO3, NO4 Long
//
// Text sizes are characters; a Chinese character counts as one, in Jet 3 as two. Unused room costs nothing. 255 is the
// largest size of the format. Long holds draw numbers up to 2147483647. The stake, PLAY_AMT, is a Double because it is
// the only number that may have a fraction: a Double keeps every whole amount exactly and gives every fraction back as
// it was typed.
#pragma once

#include <filesystem>
#include <istream>
#include <string>
#include <vector>

#include "platform/access/database/database.h"

namespace marlevo {

// The schema of the three tables.
std::vector<access::TableSchema> NewTables();

// Makes a file with the three tables, empty, and the system's password. Throws access::AccessError or
// pager::PagerError, also when the file exists.
void MakeDatabase(const std::filesystem::path& file, access::NewFile kind = {});

// Runs UTF-8 statements, one a line, through Connection::Execute, and makes them durable. Blank lines are skipped. At
// the first statement that fails, throws DatabaseError with the number of its line in the reason; the statements before
// it have been executed.
void RunStatements(const std::filesystem::path& file, std::istream& statements);

// The structural faults of a file with any password, none when the file is sound (see access::Database::FindFaults).
// The file is never changed: when a crash has left it half changed, that is an error, although the journal could undo
// the change. Throws access::AccessError or pager::PagerError.
std::vector<std::string> FaultsOf(const std::filesystem::path& file);

}  // namespace marlevo
