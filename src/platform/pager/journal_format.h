// The bytes of a rollback journal. Numbers are in the byte order of the machine, because a journal is played back on
// the machine that wrote it.
//
//   0    header: JournalHeader, then zeros to 512
//   512  records: RecordHead, then the bytes that its kind asks for
//
// Records come in batches. A batch is durable before the file is touched for it, so a batch without its end record was
// never acted on and does not count. Example, a change of page 7 of a file of 20 pages of 2048 bytes:
//
//   512   kOriginal 0, 2048 bytes   (page 0 is in every journal: it tells one file from another)
//   2576  kOriginal 7, 2048 bytes
//   4640  kRewrite 7, 32 bytes      (four hashes of the new page's four sectors)
//   4688  kBatchEnd
//
// The hash of a record continues the hash of the record before it, and the first continues that of the header, which
// has a random salt. So records that an earlier journal has left behind in the same file never pass for records of this
// one.
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
// A disk writes so many bytes whole or not at all.
constexpr std::size_t kSectorBytes = 512;

struct JournalHeader {
  std::uint64_t magic;
  std::uint64_t salt;
  std::uint32_t page_size;
  std::uint32_t page_count;  // pages of the file before the change; playing back cuts the file to this length
  std::uint64_t hash;        // of the fields above
};

enum class RecordKind : std::uint32_t {
  kOriginal = 1,  // the page's bytes in the file before the change; once for each page
  kRewrite = 2,   // a hash of each sector of the bytes that the page will be overwritten with
  kBatchEnd = 3,  // no bytes
};

struct RecordHead {
  RecordKind kind;
  std::uint32_t page;
  std::uint64_t hash;  // of the bytes that follow, of kind and page, and of the hash of the record before
};

inline std::filesystem::path JournalPath(const std::filesystem::path& file) {
  std::filesystem::path path = file;
  path += "-journal";
  return path;
}

// Tells apart what accidents produce; a forger could find bytes with the same hash. The size of `bytes` is a multiple
// of 8.
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
