// An open Access file below its tables: format, pages, texts, and which pages are in use.
//
// Storage, usage_map.h and global_map.h depend on each other in a circle. That is the nature of the format: a map of
// pages is itself kept in pages. Taking a page asks the map of the whole file, and a map that grows takes pages.
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
  // Throws AccessError when the file has another format or another password.
  static std::shared_ptr<Storage> Open(const std::filesystem::path& path, const OpenOptions& options,
                                       pager::FileSystem& files);
  // Makes a file without any pages; Creator in create.h writes the first ones.
  static std::shared_ptr<Storage> Create(const std::filesystem::path& path, NewFile kind, pager::FileSystem& files);

  const Format& Layout() const { return *format_; }
  pager::Pager& Pages() const { return *pager_; }

  // Like the functions of Pager, but throw AccessError for a page outside the file.
  pager::PageRef Read(std::uint32_t page) const;
  pager::PageEdit Change(std::uint32_t page) const;

  // Whether this is a Jet 3 file labelled Western (1252) for which OpenOptions names no code page: its texts may be in
  // another one, see code_page_guess.h.
  bool IsCodePageDoubtful() const;
  void SetCodePage(int code_page) { code_page_override_ = code_page; }
  // The code page in which a Jet 3 file stores texts with this label; a label of 0 stands for the file's own label.
  int CodePageOf(int label) const;

  // The codec for texts with this code-page label. Jet 4 has one codec for all texts. The codec lives as long as the
  // Storage.
  const TextCodec& CodecFor(int code_page_label) const;

  // Refers to the open table whose definition begins at `page`, as long as somebody uses that table. LoadedTable::Open
  // fills the slot.
  std::weak_ptr<LoadedTable>& TableSlot(std::uint32_t page) { return tables_[page]; }

  // Statements. When several Storages of this process have the same file open they share its pages, and a failure while
  // one of them flushes undoes the completed statements of all. Begin and Flush of a Storage whose statements were lost
  // that way throw AccessError, once.
  void Begin();
  void Commit();
  void Rollback() noexcept;
  bool InStatement() const { return in_statement_; }
  void Flush();
  // Like Pager::Discard. Begin and Flush do not report these statements as lost: the caller knows.
  void Discard(Fault reason) noexcept;

  // Appends a page to the file. Throws AccessError when the file has the largest size that its format allows.
  std::uint32_t AppendPage();
  // Takes a page that belongs to nobody, or appends one. The page's content is undefined. Inside a statement.
  std::uint32_t TakePage();
  // Marks a page as belonging to nobody. The caller has removed it from its owner's maps. Inside a statement.
  void GivePage(std::uint32_t page);

 private:
  Storage(const Format& format, std::shared_ptr<pager::Pager> pager) : format_(&format), pager_(std::move(pager)) {}

  void RequireKept();
  bool LooksUsed(std::uint32_t page);

  const Format* format_;
  std::shared_ptr<pager::Pager> pager_;
  int header_code_page_ = 0;
  std::optional<int> code_page_override_;
  mutable std::map<int, TextCodec> codecs_;
  std::map<std::uint32_t, std::weak_ptr<LoadedTable>> tables_;
  bool in_statement_ = false;
  std::shared_ptr<const pager::Pager::Batch> batch_;  // the batch of statements to which the last one belongs
};

}  // namespace marlevo::access
