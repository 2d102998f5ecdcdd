// Ticket lists as short text: a word a ticket, '_' an empty cell, then its colour: '*' yellow, '.' white ("1234
// 12_4*").
#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tickets/tickets.h"

namespace marlevo::test {

inline TicketList Tickets(const std::string& text) {
  TicketList tickets;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    Ticket ticket;
    std::size_t column = 0;
    for (const char c : word) {
      if (c == '*' || c == '.') {
        ticket.paint = c == '*' ? Paint::kYellow : Paint::kWhite;
      } else {
        ticket.cells.at(column++) = c == '_' ? '\0' : c;
      }
    }
    tickets.push_back(ticket);
  }
  return tickets;
}

// A list whose named kinds are ticked and hold these tickets.
inline CurrentList Lists(const std::vector<std::pair<std::size_t, std::string>>& kinds) {
  CurrentList list;
  for (const auto& [kind, tickets] : kinds) {
    list.kinds.at(kind).ticked = true;
    list.kinds[kind].tickets = Tickets(tickets);
  }
  return list;
}

inline std::string Text(const CurrentList& list, int kind) {
  std::string text;
  for (const Ticket& ticket : list.kinds.at(static_cast<std::size_t>(kind)).tickets) {
    text += text.empty() ? "" : " ";
    for (std::size_t column = 0; column < static_cast<std::size_t>(DigitColumns(kind)); ++column) {
      text += ticket.cells[column] == 0 ? '_' : ticket.cells[column];
    }
    text += ticket.paint == Paint::kYellow ? "*" : ticket.paint == Paint::kWhite ? "." : "";
  }
  return text;
}

}  // namespace marlevo::test
