#include "platform/pager/leftover_journal.h"

#include <memory>

#include "platform/pager/journal.h"
#include "platform/pager/recovery.h"

namespace marlevo::pager {
namespace {

void SetAside(FileSystem& files, const std::filesystem::path& journal) {
  std::filesystem::path aside = journal;
  aside += ".foreign";
  for (int number = 2; files.Look(aside); ++number) {
    aside = journal;
    aside += ".foreign" + std::to_string(number);
  }
  files.Rename(journal, aside, false);
}

}  // namespace

bool IsHalfChanged(FileSystem& files, const std::filesystem::path& path, DiskFile& file) {
  const std::unique_ptr<DiskFile> journal = files.Open(JournalPath(path));
  if (!journal) {
    return false;
  }
  const Recovery recovery(*journal);
  return LooksLikeJournal(*journal) && recovery.Unfinished() && recovery.Fits(file);
}

std::string RecoverFile(FileSystem& files, const std::filesystem::path& path, DiskFile& file) {
  const std::filesystem::path journal_path = JournalPath(path);
  std::unique_ptr<DiskFile> journal = files.Open(journal_path);
  if (!journal || !LooksLikeJournal(*journal)) {
    return {};
  }
  const Recovery recovery(*journal);
  if (recovery.Unfinished() && !recovery.Fits(file)) {
    if (recovery.IsCarriedBy(file)) {
      return "was left in the midst of a change and was changed by another program since, so that " +
             Utf8(journal_path.filename()) +
             " does not fit it any more; both files are kept, and this one can only be read";
    }
    journal.reset();
    SetAside(files, journal_path);
    return {};
  }
  if (recovery.Unfinished()) {
    recovery.PlayBack(file);
    journal->Truncate(0);
    journal->Sync();
  }
  journal.reset();
  try {
    files.Remove(journal_path);
  } catch (const PagerError&) {
    // The journal is void where it lies, and the file can be read beside it.
  }
  return {};
}

}  // namespace marlevo::pager
