// What of a save is in a database file.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "customers/purchase_record.h"
#include "platform/database/connection.h"

namespace marlevo {

// The number of tickets that are stored for a customer. Fails the test unless they are whole and the first ones of a
// save of `list`, all under one stamp.
inline std::size_t StoredOfSave(Connection& connection, const std::string& number, const CurrentList& list) {
  const std::vector<StoredTicket> expected = TicketsToStore(list);
  std::size_t stored = 0;
  std::string stamp;
  Recordset rows =
      connection.Open("SELECT * FROM CUSTOM_D WHERE CUSTOM_NO='" + number + "' ORDER BY PLAY_MODE,PLAY_SEQ");
  for (; !rows.AtEnd(); rows.MoveNext(), ++stored) {
    const auto whole = [&rows](const char* field) { return static_cast<int>(rows.Number(field)); };
    const StoredTicket ticket{whole("PLAY_MODE"),
                              rows.Text("PLAY_AMT"),
                              whole("PLAY_SEQ"),
                              {whole("NO1"), whole("NO2"), whole("NO3"), whole("NO4")}};
    stamp = stored == 0 ? rows.Text("SAL_DATE") : stamp;
    const bool same =
        stored < expected.size() && ticket == expected[stored] && stamp.size() == 14 && rows.Text("SAL_DATE") == stamp;
    if (!same) {
      ADD_FAILURE() << "row " << stored << " of the save of " << number << " is another";
      break;
    }
  }
  return stored;
}

}  // namespace marlevo
