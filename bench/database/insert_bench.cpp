// Saving the largest list into tables without an index.
#include "database/stores.h"
#include "support/scratch_folder.h"

int main() {
  using namespace marlevo;
  const test::ScratchFolder folder;
  bench::YardstickTable table;
  bench::MeasureSaving(table, folder.Path(), bench::Indexes::kNone, 0.35);
  return table.ExitStatus();
}
