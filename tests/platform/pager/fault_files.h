// Files in memory on a disk that fails when told to and forgets what was not synchronised.
//
// Every operation that changes something counts as one step, from 1. A test runs its work once to learn the number of
// steps and then again with trouble at step 1, 2, 3 ...; `Killed` and `AfterPowerFailure` are the disk as the next
// process finds it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/pager/disk_file.h"

namespace marlevo::pager {

// How far apart the moments are that a test of every moment tries. Every one; but every seventh under the sanitizers,
// which take ten times as long and look for what goes wrong on the way, whatever the moment.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr std::uint64_t kMomentStep = 7;
#else
inline constexpr std::uint64_t kMomentStep = 1;
#endif

class FaultFiles final : public FileSystem {
 public:
  enum class Trouble {
    kError,  // as many steps as `count` says fail, a write after nothing, a part or all of it
    kFull,   // from this step on nothing grows, until MakeRoom
    kEnd,    // this step and all after it fail: the machine stops here
  };

  void Plan(std::uint64_t step, Trouble trouble, std::uint64_t count = 1);
  void MakeRoom() { trouble_step_ = 0; }
  std::uint64_t Steps() const { return steps_; }
  // Whether the planned step has come.
  bool Struck() const { return trouble_step_ != 0 && steps_ >= trouble_step_; }
  void SetWritable(bool writable) { writable_ = writable; }

  // What the system has been told, synchronised or not.
  std::unique_ptr<FaultFiles> Killed() const;
  // Of what was not synchronised any part is lost: whole writes, single sectors, the end of one sector, names. Names
  // are made and lost in order.
  std::unique_ptr<FaultFiles> AfterPowerFailure(std::uint32_t seed) const;

  bool Exists(const std::string& name) const { return names_.contains(name); }
  std::vector<std::byte>& Content(const std::string& name) { return names_.at(name)->now; }
  void Put(const std::string& name, std::vector<std::byte> content);

  std::filesystem::path Resolve(const std::filesystem::path& path) override { return path; }
  std::unique_ptr<DiskFile> Open(const std::filesystem::path& path) override;
  std::unique_ptr<DiskFile> Create(const std::filesystem::path& path) override;
  std::optional<FileStamp> Look(const std::filesystem::path& path) override;
  bool RemoveUnused(const std::filesystem::path& path) override;
  void Remove(const std::filesystem::path& path) override;
  void Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) override;
  void SyncFolder(const std::filesystem::path& folder) override;

 private:
  friend class FaultFile;

  struct Change {
    bool truncate;
    std::uint64_t offset;  // or the new size
    std::vector<std::byte> bytes;
  };
  struct Node {
    std::uint64_t id;
    std::vector<std::byte> durable;
    std::vector<std::byte> now;
    std::vector<Change> unsynced;
    std::int64_t version;
  };
  using Names = std::map<std::string, std::shared_ptr<Node>>;

  // Counts a step. True when it has to fail.
  bool Step(bool grows);
  void Check(const std::filesystem::path& path, bool grows);
  static void Apply(std::vector<std::byte>& content, const Change& change);
  static std::vector<std::byte> Survivor(const Node& node, std::mt19937& random);

  Names names_;
  std::vector<Names> unsynced_names_ = {{}};  // the durable ones, then after each change
  std::uint64_t next_id_ = 1;
  std::uint64_t steps_ = 0;
  std::uint64_t trouble_step_ = 0;
  std::uint64_t trouble_count_ = 1;
  Trouble trouble_ = Trouble::kError;
  bool writable_ = true;
};

}  // namespace marlevo::pager
