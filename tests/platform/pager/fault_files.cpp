#include "platform/pager/fault_files.h"

#include <algorithm>
#include <utility>

namespace marlevo::pager {
class FaultFile final : public DiskFile {
 public:
  FaultFile(FaultFiles& files, std::filesystem::path path, std::shared_ptr<FaultFiles::Node> node, bool writable)
      : files_(files), path_(std::move(path)), node_(std::move(node)), writable_(writable) {}

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
    if (offset >= node_->now.size()) {
      return 0;
    }
    const std::size_t n = std::min(bytes.size(), node_->now.size() - static_cast<std::size_t>(offset));
    std::copy_n(node_->now.begin() + static_cast<std::ptrdiff_t>(offset), n, bytes.begin());
    return n;
  }

  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
    const bool fails = files_.Step(offset + bytes.size() > node_->now.size());
    // A write that fails has done nothing, some of its work, or all of it.
    const auto written = static_cast<std::ptrdiff_t>(fails ? bytes.size() * (files_.Steps() % 3) / 2 : bytes.size());
    Do({false, offset, {bytes.begin(), bytes.begin() + written}});
    if (fails) {
      throw PagerError(path_, "planned trouble while writing");
    }
  }

  void Truncate(std::uint64_t size) override {
    files_.Check(path_, size > node_->now.size());
    Do({true, size, {}});
  }

  void Sync() override {
    files_.Check(path_, false);
    for (const FaultFiles::Change& change : node_->unsynced) {
      FaultFiles::Apply(node_->durable, change);
    }
    node_->unsynced.clear();
  }

  std::uint64_t Size() override { return node_->now.size(); }
  bool Writable() const override { return writable_; }
  FileStamp Stamp() override { return {.id = {1, node_->id}, .size = node_->now.size(), .time = node_->version}; }
  // There is one process.
  bool Lock(LockKind, LockMode, bool) override { return true; }
  void Unlock(LockKind) noexcept override {}

 private:
  void Do(FaultFiles::Change change) {
    if (!writable_) {
      throw PagerError(path_, "is open for reading only");
    }
    FaultFiles::Apply(node_->now, change);
    ++node_->version;
    node_->unsynced.push_back(std::move(change));
  }

  FaultFiles& files_;
  std::filesystem::path path_;
  std::shared_ptr<FaultFiles::Node> node_;
  bool writable_;
};

void FaultFiles::Plan(std::uint64_t step, Trouble trouble, std::uint64_t count) {
  trouble_step_ = step;
  trouble_count_ = count;
  trouble_ = trouble;
}

std::unique_ptr<FaultFiles> FaultFiles::Killed() const {
  auto files = std::make_unique<FaultFiles>();
  for (const auto& [name, node] : names_) {
    files->Put(name, node->now);
  }
  return files;
}

std::unique_ptr<FaultFiles> FaultFiles::AfterPowerFailure(std::uint32_t seed) const {
  std::mt19937 random(seed);
  auto files = std::make_unique<FaultFiles>();
  for (const auto& [name, node] : unsynced_names_[random() % unsynced_names_.size()]) {
    files->Put(name, Survivor(*node, random));
  }
  return files;
}

void FaultFiles::Put(const std::string& name, std::vector<std::byte> content) {
  names_[name] = std::make_shared<Node>(Node{next_id_++, content, content, {}, 0});
  unsynced_names_ = {names_};
}

std::unique_ptr<DiskFile> FaultFiles::Open(const std::filesystem::path& path) {
  const auto found = names_.find(path.string());
  if (found == names_.end()) {
    return nullptr;
  }
  return std::make_unique<FaultFile>(*this, path, found->second, writable_);
}

std::unique_ptr<DiskFile> FaultFiles::Create(const std::filesystem::path& path) {
  Check(path, true);
  if (!writable_ || names_.contains(path.string())) {
    throw PagerError(path, "cannot be created");
  }
  const auto node = std::make_shared<Node>(Node{next_id_++, {}, {}, {}, 0});
  names_[path.string()] = node;
  unsynced_names_.push_back(names_);
  return std::make_unique<FaultFile>(*this, path, node, true);
}

std::optional<FileStamp> FaultFiles::Look(const std::filesystem::path& path) {
  const std::unique_ptr<DiskFile> file = Open(path);
  return file ? std::optional(file->Stamp()) : std::nullopt;
}

bool FaultFiles::RemoveUnused(const std::filesystem::path& path) {
  Remove(path);
  return true;
}

void FaultFiles::Remove(const std::filesystem::path& path) {
  if (!names_.contains(path.string())) {
    return;
  }
  Check(path, false);
  names_.erase(path.string());
  unsynced_names_.push_back(names_);
}

void FaultFiles::Rename(const std::filesystem::path& from, const std::filesystem::path& to, bool replace) {
  Check(to, false);
  if (!replace && names_.contains(to.string())) {
    throw PagerError(to, "exists already");
  }
  names_[to.string()] = names_.at(from.string());
  names_.erase(from.string());
  unsynced_names_.push_back(names_);
}

void FaultFiles::SyncFolder(const std::filesystem::path& folder) {
  Check(folder, false);
  unsynced_names_ = {names_};
}

bool FaultFiles::Step(bool grows) {
  ++steps_;
  if (trouble_step_ == 0 || steps_ < trouble_step_) {
    return false;
  }
  if (trouble_ == Trouble::kError) {
    return steps_ < trouble_step_ + trouble_count_;
  }
  return trouble_ == Trouble::kEnd || grows;
}

void FaultFiles::Check(const std::filesystem::path& path, bool grows) {
  if (Step(grows)) {
    throw PagerError(path, "planned trouble");
  }
}

void FaultFiles::Apply(std::vector<std::byte>& content, const Change& change) {
  if (change.truncate) {
    content.resize(static_cast<std::size_t>(change.offset));
    return;
  }
  const auto offset = static_cast<std::size_t>(change.offset);
  if (content.size() < offset + change.bytes.size()) {
    content.resize(offset + change.bytes.size());
  }
  std::ranges::copy(change.bytes, content.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::vector<std::byte> FaultFiles::Survivor(const Node& node, std::mt19937& random) {
  static constexpr std::size_t kSector = 512;
  // From nothing to everything: some disks lose little, some all.
  static constexpr std::uint32_t kKeptPercent[] = {0, 50, 90, 100};
  const std::uint32_t kept = kKeptPercent[random() % std::size(kKeptPercent)];
  const bool by_sector = random() % 2 == 0;
  bool tears = random() % 2 == 0;  // one sector, the one that the disk is at when the power goes
  const auto keeps = [&] { return random() % 100 < kept; };
  std::vector<std::byte> content = node.durable;
  for (const Change& change : node.unsynced) {
    if (change.truncate || !by_sector) {
      if (keeps()) {
        Apply(content, change);
      }
      continue;
    }
    for (std::size_t at = 0; at < change.bytes.size();) {
      const std::size_t sector_end = ((change.offset + at) / kSector + 1) * kSector;
      const std::size_t n =
          std::min(change.bytes.size() - at, static_cast<std::size_t>(sector_end - change.offset - at));
      const auto from = change.bytes.begin() + static_cast<std::ptrdiff_t>(at);
      const bool torn = tears && random() % 16 == 0;
      tears = tears && !torn;
      const auto got = static_cast<std::ptrdiff_t>(torn ? random() % n : n);
      if (torn || keeps()) Apply(content, {false, change.offset + at, {from, from + got}});
      at += n;
    }
  }
  return content;
}

}  // namespace marlevo::pager
