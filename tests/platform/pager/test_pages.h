// Pages that can be told apart: every sector of a page depends on the page's number and on one value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/pager/pager.h"

namespace marlevo::pager {

constexpr const char* kFile = "/disk/file";
constexpr const char* kJournal = "/disk/file-journal";
constexpr std::size_t kTestPage = 2048;
// Four blocks and sixteen pages: whatever needs much memory happens early.
constexpr Limits kSmall{4 * 65536, 16 * kTestPage};

// The values of all pages of a file.
using Image = std::vector<std::uint32_t>;

inline void Fill(std::span<std::byte> bytes, std::uint32_t page, std::uint32_t value) {
  std::uint64_t word = (std::uint64_t{page} << 32) | value;
  for (std::size_t at = 0; at < bytes.size(); at += 8) {
    std::memcpy(bytes.data() + at, &word, 8);
    word = word * 6364136223846793005U + 1442695040888963407U;
  }
}

inline std::uint32_t ValueOf(std::span<const std::byte> bytes, std::uint32_t page) {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes.data(), sizeof value);
  std::vector<std::byte> expected(bytes.size());
  Fill(expected, page, value);
  if (std::memcmp(expected.data(), bytes.data(), bytes.size()) != 0) {
    throw std::runtime_error("page " + std::to_string(page) + " is torn");
  }
  return value;
}

inline PageFormat TestFormat() {
  return {kTestPage, [](std::uint32_t page, std::span<std::byte> bytes) {
            for (std::byte& byte : bytes) {
              byte ^= static_cast<std::byte>(page * 7 + 1);
            }
          }};
}

inline PageFormat TestProbe(std::span<const std::byte> head) {
  if (head.size() < kTestPage) {
    throw std::runtime_error("too short");
  }
  ValueOf(head.first(kTestPage), 0);
  return TestFormat();
}

inline Image ReadAll(Pager& pager) {
  const Reading reading(pager);
  Image image;
  for (std::uint32_t page = 0; page < pager.PageCount(); ++page) {
    const PageRef ref = pager.Read(page);
    image.push_back(ValueOf(ref.Bytes(), page));
  }
  return image;
}

inline void ChangePage(Pager& pager, std::uint32_t page, std::uint32_t value) {
  const PageEdit edit = pager.Change(page);
  Fill(edit.Bytes(), page, value);
}

inline void AppendPage(Pager& pager, std::uint32_t value) {
  ChangePage(pager, pager.Append(), value);
}

// A statement as a scope: rolled back unless committed.
class Statement {
 public:
  explicit Statement(Pager& pager) : pager_(pager) { pager_.Begin(); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() {
    if (open_) {
      pager_.Rollback();
    }
  }
  void Commit() {
    pager_.Commit();
    open_ = false;
  }

 private:
  Pager& pager_;
  bool open_ = true;
};

// One flushed statement: these pages, and so many new ones, get the value.
inline void Store(Pager& pager, std::initializer_list<std::uint32_t> pages, std::uint32_t appended,
                  std::uint32_t value) {
  Statement statement(pager);
  for (const std::uint32_t page : pages) {
    ChangePage(pager, page, value);
  }
  for (std::uint32_t i = 0; i < appended; ++i) {
    AppendPage(pager, value);
  }
  statement.Commit();
  pager.Flush();
}

inline std::shared_ptr<Pager> NewPager(const std::filesystem::path& path, FileSystem& files, std::uint32_t pages,
                                       std::uint32_t value = 0) {
  std::shared_ptr<Pager> pager = Pager::Create(path, TestFormat(), files, kSmall);
  Store(*pager, {}, pages, value);
  return pager;
}

}  // namespace marlevo::pager
