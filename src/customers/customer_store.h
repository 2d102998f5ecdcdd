// The customers and what they bought, as the database keeps them: everything that the customer windows ask and change.
// Windows show what a store gives and hand over what the operator entered; they know no table and no statement.
//
// Whatever changes something is on the disk when the call returns. Every failure is a DatabaseError; one in the middle
// of a call leaves what the statements before it did, on the disk too.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "customers/customer_statements.h"
#include "customers/prizes.h"
#include "customers/purchase_record.h"
#include "platform/database/connection.h"

namespace marlevo {

class CustomerStore {
 public:
  // Opens a connection of its own. DatabaseError when the file cannot be opened.
  explicit CustomerStore(const std::string& connection_string) : connection_(connection_string) {}
  // Gives the file back; every later call is a DatabaseError.
  void Close() { connection_.Close(); }

  // All customers in the order of their numbers.
  std::vector<Customer> Customers();
  // Whether a customer has this number; upper and lower case are the same to the database.
  bool Has(std::string_view number);
  // False when the number is taken already; nothing is stored then.
  bool Add(const Customer& customer);
  // Deletes the customer of this number and stores the one given in its place.
  [[nodiscard]] RowChange Replace(const Customer& customer);
  // Deletes the customer, then everything that the customer bought. What is returned is the refusal of the second
  // deletion: the customer is gone, the purchases are not. It is to be thrown once the window shows that.
  [[nodiscard]] std::optional<DatabaseError> Remove(std::string_view number);

  // How many characters a field of a customer has at most; nothing when the file sets no limit.
  std::optional<std::size_t> MostCharacters(CustomerField field);
  // A function that tells whether the file has room for a text: in an old file a Chinese character takes the room of
  // two.
  std::function<bool(std::string_view text)> RoomIn(CustomerField field);

  // The purchase records of a customer, in the order in which the database gives them. Records without a stamp are left
  // out.
  std::vector<RecordSummary> RecordsOf(std::string_view number);
  // The tickets of one record. Those with a play mode other than 0 to 4 are left out. `step` is called after every
  // ticket with the number of tickets read so far.
  PurchaseRecord Record(std::string_view number, std::string_view stamp, const std::function<void(int)>& step);
  void RemoveRecord(std::string_view number, std::string_view stamp);
  // Stores the tickets as one record under the stamp of this moment, which is returned. `step` is called after every
  // ticket with the number of tickets stored so far.
  std::string Save(std::string_view number, const std::vector<StoredTicket>& tickets,
                   const std::function<void(int)>& step);

  // The winning tickets, sorted by play mode and within a play mode by customer number. `drawn`: the drawn digits of
  // positions 1 to 4 as typed.
  std::vector<Winner> Winners(const std::array<std::string, 4>& drawn, const CheckScope& scope);

 private:
  Connection connection_;
};

}  // namespace marlevo
