// The bytes of a rollback journal. Numbers are in the machine's order: a journal serves the machine that wrote it.
//
//   0    header: JournalHeader, then zeros to 512
//   512  records: RecordHead, then the bytes that its kind asks for
//
// Records come in batches. A batch is durable before the file is touched for it, so only batches with their end count.
// All hashes start from the header's random salt and go on from record to record: what an earlier journal left behind
// in the same file never continues a later one.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <span>

namespace marlevo::pager {

constexpr std::uint64_t kJournalMagic = 0x314c4e524a56524d;  // "MRVJRNL1"
constexpr std::size_t kJournalHeaderBytes = 512;
// What a disk writes whole or not at all.
constexpr std::size_t kSectorBytes = 512;

struct JournalHeader {
  std::uint64_t magic;
  std::uint64_t salt;
  std::uint32_t page_size;
  std::uint32_t page_count;  // of the file before: it is cut to this length again
  std::uint64_t hash;        // of everything before
};

enum class RecordKind : std::uint32_t {
  kOriginal = 1,  // the page's bytes in the file before; once for each page
  kRewrite = 2,   // a hash of each sector of what the page will be overwritten with
  kBatchEnd = 3,  // nothing follows
};

struct RecordHead {
  RecordKind kind;
  std::uint32_t page;
  std::uint64_t hash;  // of the bytes that follow, of kind, page and the hash of the record before
};

inline std::filesystem::path JournalPath(const std::filesystem::path& file) {
  std::filesystem::path path = file;
  path += "-journal";
  return path;
}

// Good against accidents, not against forgers. `bytes` in multiples of 8.
inline std::uint64_t Hash(std::uint64_t seed, std::span<const std::byte> bytes) {
  std::uint64_t hash = seed ^ 0x9e3779b97f4a7c15;
  for (std::size_t at = 0; at < bytes.size(); at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, 8);
    hash = std::rotl(hash ^ word, 27) * 0x9fb21c651e98df25;
    hash ^= hash >> 32;
  }
  return hash;
}

inline std::uint64_t HeaderHash(const JournalHeader& header) {
  return Hash(header.salt, std::as_bytes(std::span(&header, 1)).first(offsetof(JournalHeader, hash)));
}

inline std::uint64_t RecordHash(std::uint64_t previous, RecordKind kind, std::uint32_t page,
                                std::span<const std::byte> bytes) {
  const std::uint64_t head = (static_cast<std::uint64_t>(kind) << 32) | page;
  return Hash(Hash(previous, std::as_bytes(std::span(&head, 1))), bytes);
}

}  // namespace marlevo::pager
