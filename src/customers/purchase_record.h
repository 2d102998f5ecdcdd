// A purchase record: the tickets that one save stored for a customer under one stamp of 14 digits (local "yyyymmdd" and
// "hhnnss").
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "customers/prizes.h"
#include "tickets/tickets.h"

namespace marlevo {

// One row of CUSTOM_D without its customer and stamp.
struct StoredTicket {
  int mode;    // the bet kind
  int amount;  // yuan
  int seq;     // row in the kind's list, from 1
  std::array<int, 4> digits;

  bool operator==(const StoredTicket&) const = default;
};

// A record as lists show it.
struct RecordSummary {
  std::string stamp;
  int tickets;

  bool operator==(const RecordSummary&) const = default;
};

// A ticket of a record as it is shown: the stored texts, a missing value as an empty text. Of the digits only as many
// are set as the play mode shows.
struct RecordTicket {
  std::string seq;
  std::array<std::string, 4> digits;

  bool operator==(const RecordTicket&) const = default;
};

// The tickets of one record by play mode, in the order of their sequence, and the stake of each play mode that has
// tickets: that of its last ticket, empty when the ticket has none.
struct PurchaseRecord {
  std::array<std::vector<RecordTicket>, kPlayModes> tickets;
  std::array<std::optional<std::string>, kPlayModes> stakes;
};

// What a save stores, in the order of storing: the tickets of every ticked kind, kind by kind, each list in its order.
std::vector<StoredTicket> TicketsToStore(const CurrentList& list);

// The record's line in a list of records: the stamp as 0000/00/00-00:00:00, a blank, the ticket count right-aligned in
// five places and "張". A stamp that is not all digits is shown as it stands.
std::string RecordLine(const RecordSummary& record);

// The stamp of such a line: its first 20 characters, trimmed, without "/", ":" and "-".
std::string StampOfLine(std::string_view line);

// The stake of a play mode in the shown record: right-aligned in three places, a line break (CR LF), "元". Without
// tickets it is 0; a ticket without stake leaves the places empty.
std::string StakeText(const std::optional<std::string>& stake);

}  // namespace marlevo
