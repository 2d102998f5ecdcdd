#include "customers/purchase_record.h"

#include <algorithm>
#include <utility>

#include "platform/base/text.h"

namespace marlevo {

namespace {

std::string FirstCharacters(std::string_view text, int count) {
  std::string_view rest = text;
  for (; count > 0 && !rest.empty(); --count) {
    TakeCharacter(rest);
  }
  return std::string(text.substr(0, text.size() - rest.size()));
}

}  // namespace

std::vector<StoredTicket> TicketsToStore(const CurrentList& list) {
  std::vector<StoredTicket> stored;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const KindList& of_kind = list.kinds[kind];
    if (!of_kind.ticked) {
      continue;
    }
    int seq = 0;
    for (const Ticket& ticket : of_kind.tickets) {
      StoredTicket& row = stored.emplace_back(StoredTicket{kind, of_kind.amount, ++seq, {}});
      for (int column = 0; column < DigitColumns(kind); ++column) {
        row.digits[column] = DigitValue(ticket.cells[column]);
      }
    }
  }
  return stored;
}

std::string RecordLine(const RecordSummary& record) {
  std::string_view stamp = record.stamp;
  std::string shown(stamp);
  if (stamp.find_first_not_of("0123456789") == std::string_view::npos) {
    // The pattern 0000/00/00-00:00:00 is filled from its right end: 021005143012 is shown as 0002/10/05-14:30:12, and
    // a stamp of more than 14 digits keeps the extra ones at the left.
    stamp.remove_prefix(std::min(stamp.find_first_not_of('0'), stamp.size()));
    shown.assign(stamp.size() < 14 ? 14 - stamp.size() : 0, '0');
    shown.append(stamp);
    // The marks go in from right to left, so that none of them moves the place of the next one.
    const std::size_t month = shown.size() - 10;
    for (const auto& [place, mark] : {std::pair{8, ':'}, {6, ':'}, {4, '-'}, {2, '/'}, {0, '/'}}) {
      shown.insert(month + place, 1, mark);
    }
  }
  return shown + " " + WidthMask(std::to_string(record.tickets), 5) + "張";
}

std::string StampOfLine(std::string_view line) {
  std::string stamp = FirstCharacters(line, 20);
  stamp.erase(0, stamp.find_first_not_of(' '));
  stamp.erase(stamp.find_last_not_of(' ') + 1);
  std::erase_if(stamp, [](char c) { return c == '/' || c == ':' || c == '-'; });
  return stamp;
}

std::string StakeText(const std::vector<RecordTicket>& tickets) {
  return WidthMask(tickets.empty() ? "0" : tickets.back().amount, 3).append("\r\n元");
}

std::string SumText(const PurchaseRecord& record) {
  std::size_t count = 0;
  double yuan = 0;
  for (const std::vector<RecordTicket>& tickets : record) {
    count += tickets.size();
    for (const RecordTicket& ticket : tickets) {
      yuan += LenientNumber(ticket.amount);
    }
  }
  return count == 0 ? "" : "合計 " + std::to_string(count) + " 張，" + NumberText(yuan) + " 元";
}

std::optional<CurrentList> ListOfRecord(const PurchaseRecord& record) {
  CurrentList list;
  for (int kind = 0; kind < kBetKinds; ++kind) {
    if (record[kind].empty()) {
      continue;
    }
    const std::string& amount = record[kind].front().amount;
    const auto known = std::ranges::find(kAmounts, amount, [](int yuan) { return std::to_string(yuan); });
    if (known == kAmounts.end()) {
      return std::nullopt;
    }
    KindList& of_kind = list.kinds[kind];
    of_kind.ticked = true;
    of_kind.amount = *known;
    for (const RecordTicket& stored : record[kind]) {
      Ticket& ticket = of_kind.tickets.emplace_back();
      for (int column = 0; column < DigitColumns(kind); ++column) {
        const std::string& digit = stored.digits[column];
        if (stored.amount != amount || digit.size() != 1 || digit[0] < '0' || digit[0] > '9') {
          return std::nullopt;
        }
        ticket.cells[column] = digit[0];
      }
    }
  }
  const auto ticked = [](const KindList& kind) { return kind.ticked; };
  return std::ranges::any_of(list.kinds, ticked) ? std::optional(std::move(list)) : std::nullopt;
}

}  // namespace marlevo
