// An open Access file below its tables: format, pages, texts, and which pages are in use.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/access/bytes/bytes.h"
#include "platform/access/bytes/file_header.h"
#include "platform/access/bytes/format.h"
#include "platform/access/bytes/schema.h"
#include "platform/access/bytes/text_codec.h"
#include "platform/pager/pager.h"

namespace marlevo::access {

class LoadedTable;

class Storage : public std::enable_shared_from_this<Storage> {
 public:
  // Checks format and password.
  static std::shared_ptr<Storage> Open(const std::filesystem::path& path, const OpenOptions& options,
                                       pager::FileSystem& files);
  // A file of no pages.
  static std::shared_ptr<Storage> Create(const std::filesystem::path& path, NewFile kind, pager::FileSystem& files);

  const Format& Layout() const { return *format_; }
  pager::Pager& Pages() const { return *pager_; }

  // As Pager's, but a page outside the file is an AccessError.
  pager::PageRef Read(std::uint32_t page) const;
  pager::PageEdit Change(std::uint32_t page) const;

  // A Jet 3 file labelled Western (1252) for which nobody has named a code page: its texts may be in another one.
  bool IsCodePageDoubtful() const;
  void SetCodePage(int code_page) { code_page_override_ = code_page; }
  // The code page in which Jet 3 texts with this label are stored.
  int CodePageOf(int label) const;

  // How texts with this code-page label are stored; the label counts for Jet 3 only. Lives as long as the Storage.
  const TextCodec& CodecFor(int code_page_label) const;

  // Where the open table whose definition begins at `page` is remembered while somebody has it; filled by
  // LoadedTable::Open.
  std::weak_ptr<LoadedTable>& TableSlot(std::uint32_t page) { return tables_[page]; }

  // Statements of this Storage. Begin and Flush throw, once, when the statements before that were not flushed are lost,
  // because another Storage failed to store the same pages.
  void Begin();
  void Commit();
  void Rollback() noexcept;
  bool InStatement() const { return in_statement_; }
  void Flush();
  // As Pager's. The caller knows that his own statements are undone.
  void Discard(Fault reason) noexcept;

  // A new page at the end of the file. Throws AccessError when the file has the largest size of its format.
  std::uint32_t AppendPage();
  // Takes a page that nobody uses, or makes the file longer; its content is undefined. Inside a statement.
  std::uint32_t TakePage();
  // Gives a page back. The caller has removed it from all maps. Inside a statement.
  void GivePage(std::uint32_t page);

 private:
  Storage(const Format& format, std::shared_ptr<pager::Pager> pager) : format_(&format), pager_(std::move(pager)) {}

  void RequireKept();
  bool LooksUsed(std::uint32_t page) const;

  const Format* format_;
  std::shared_ptr<pager::Pager> pager_;
  int header_code_page_ = 0;
  std::optional<int> code_page_override_;
  mutable std::map<int, TextCodec> codecs_;
  std::map<std::uint32_t, std::weak_ptr<LoadedTable>> tables_;
  bool in_statement_ = false;
  std::shared_ptr<const pager::Pager::Batch> batch_;  // to which the last statement belongs
};

}  // namespace marlevo::access
