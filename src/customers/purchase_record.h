// A purchase record: the tickets that one save stored for a customer under one stamp of 14 digits (local "yyyymmdd" and
// "hhnnss").
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "tickets/tickets.h"

namespace marlevo {

// One row of CUSTOM_D without its customer and stamp.
struct StoredTicket {
  int mode;  // the bet kind
  std::string amount;
  int seq;  // row in the kind's list, from 1
  std::array<int, 4> digits;

  bool operator==(const StoredTicket&) const = default;
};

// What a save stores, in the order of storing: the tickets of every ticked kind, kind by kind, each list in its order.
std::vector<StoredTicket> TicketsToStore(const CurrentList& list);

// The record's line in a list of records: the stamp as 0000/00/00-00:00:00, a blank, the ticket count right-aligned in
// five places and "張". A stamp that is not all digits is shown as it stands.
std::string RecordLine(std::string_view stamp, std::string_view ticket_count);

// The stamp of such a line: its first 20 characters, trimmed, without "/", ":" and "-".
std::string StampOfLine(std::string_view line);

// The ticket count of such a line.
int TicketsOfLine(std::string_view line);

// The stake of a play mode in the shown record: right-aligned in three places, a line break (CR LF), "元".
std::string StakeText(std::string_view amount);

}  // namespace marlevo
