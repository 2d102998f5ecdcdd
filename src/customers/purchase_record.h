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

// A ticket of a record: the stored texts, a missing value as an empty text.
struct RecordTicket {
  std::string seq;
  std::string amount;  // yuan
  std::array<std::string, 4> digits;

  bool operator==(const RecordTicket&) const = default;
};

// The tickets of one record by play mode, in the order of their sequence.
using PurchaseRecord = std::array<std::vector<RecordTicket>, kPlayModes>;

// What a save stores, in the order of storing: the tickets of every ticked kind, kind by kind, each list in its order.
std::vector<StoredTicket> TicketsToStore(const CurrentList& list);

// The record's line in a list of records: the stamp as 0000/00/00-00:00:00, a blank, the ticket count right-aligned in
// five places and "張". A stamp that is not all digits is shown as it stands.
std::string RecordLine(const RecordSummary& record);

// The stamp of such a line: its first 20 characters, trimmed, without "/", ":" and "-".
std::string StampOfLine(std::string_view line);

// The stake of a play mode in the shown record, that of the last of its tickets: right-aligned in three places, a line
// break (CR LF), "元". Without tickets it is 0; a ticket without stake leaves the places empty.
std::string StakeText(const std::vector<RecordTicket>& tickets);

// How many tickets a record has and what they cost, e.g. "合計 2 張，50 元"; empty for a record without tickets.
std::string SumText(const PurchaseRecord& record);

// The list from which a save would store this record; it has no multipliers, because none are stored. Nothing when
// there is no such list: the record is empty, or holds a digit or an amount that no list has, or tickets of one kind
// with different amounts, which two saves within one second leave.
std::optional<CurrentList> ListOfRecord(const PurchaseRecord& record);

}  // namespace marlevo
