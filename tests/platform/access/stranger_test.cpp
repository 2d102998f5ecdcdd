// Another program, one that knows nothing of our locks, does something to the file at every moment between opening a
// window's connection and the end of its flush. It is a process of its own, on real files. Either the work is refused
// and no byte of it is in the file, or it is done; what the other program has written is never lost.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <thread>

#include "platform/access/access_files.h"
#include "platform/access/database/database.h"
#include "platform/pager/fault_files.h"

namespace marlevo::access {
namespace {

using enum ColumnType;
using pager::FileStamp;
namespace fs = std::filesystem;

// The system's files, with something to be done before one of the operations, which count from 1.
class WatchedFiles final : public pager::FileSystem {
 public:
  WatchedFiles(std::uint64_t moment, std::function<void()> deed) : moment_(moment), deed_(std::move(deed)) {}

  void Pass() {
    if (++passed_ == moment_) {
      deed_();
    }
  }

  fs::path Resolve(const fs::path& path) override { return native_.Resolve(path); }
  std::unique_ptr<pager::DiskFile> Open(const fs::path& path) override {
    Pass();
    return Watched(native_.Open(path));
  }
  std::unique_ptr<pager::DiskFile> Create(const fs::path& path) override {
    Pass();
    return Watched(native_.Create(path));
  }
  std::optional<FileStamp> Look(const fs::path& path) override {
    Pass();
    return native_.Look(path);
  }
  bool RemoveUnused(const fs::path& path) override {
    Pass();
    return native_.RemoveUnused(path);
  }
  void Remove(const fs::path& path) override {
    Pass();
    native_.Remove(path);
  }
  void Rename(const fs::path& from, const fs::path& to, bool replace) override {
    Pass();
    native_.Rename(from, to, replace);
  }
  void SyncFolder(const fs::path&) override { Pass(); }

 private:
  class WatchedFile final : public pager::DiskFile {
   public:
    WatchedFile(WatchedFiles& files, std::unique_ptr<pager::DiskFile> file) : files_(files), file_(std::move(file)) {}
    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
      return Passing().ReadAt(offset, bytes);
    }
    void WriteAt(std::uint64_t offset, Bytes bytes) override { Passing().WriteAt(offset, bytes); }
    std::optional<FileStamp> Overwrite(const std::vector<Piece>& pieces, const Unchanged& unchanged) override {
      return Passing().Overwrite(pieces, unchanged);
    }
    void Truncate(std::uint64_t size) override { Passing().Truncate(size); }
    void Sync() override { files_.Pass(); }  // no power fails here, and a real one takes long
    std::uint64_t Size() override { return Passing().Size(); }
    bool Writable() const override { return file_->Writable(); }
    FileStamp Stamp() override { return Passing().Stamp(); }
    bool Lock(pager::LockKind kind, pager::LockMode mode, bool wait) override {
      return Passing().Lock(kind, mode, wait);
    }
    void Unlock(pager::LockKind kind) noexcept override { file_->Unlock(kind); }

   private:
    pager::DiskFile& Passing() {
      files_.Pass();
      return *file_;
    }
    WatchedFiles& files_;
    std::unique_ptr<pager::DiskFile> file_;
  };

  std::unique_ptr<pager::DiskFile> Watched(std::unique_ptr<pager::DiskFile> file) {
    return file ? std::make_unique<WatchedFile>(*this, std::move(file)) : nullptr;
  }

  pager::FileSystem& native_ = pager::NativeFiles();
  std::uint64_t moment_;
  std::function<void()> deed_;
  std::uint64_t passed_ = 0;
};

// Another process that does `deed` at once. It ends when told to, or when the deed is done.
class Stranger {
 public:
  explicit Stranger(const std::function<void()>& deed) {
    int done[2];
    if (pipe(done) != 0) {
      throw std::runtime_error("no pipe");
    }
    pid_ = fork();
    if (pid_ == 0) {
      for (int handle = 3; handle < 100; ++handle) {
        if (handle != done[1]) close(handle);  // an inherited handle would share our locks
      }
      done_ = done[1];
      deed();
      Tell();
      _exit(0);
    }
    close(done[1]);
    char told = 0;
    in_the_midst_ = read(done[0], &told, 1) == 1 && told == 's';
    close(done[0]);
  }
  Stranger(const Stranger&) = delete;
  Stranger& operator=(const Stranger&) = delete;
  ~Stranger() {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }

  // In the midst of a deed: goes on using what is open, until it is told to end.
  [[noreturn]] static void Stay() {
    Tell('s');
    for (;;) {
      pause();
    }
  }
  bool InTheMidst() const { return in_the_midst_; }

 private:
  static void Tell(char what = 'x') {
    if (write(done_, &what, 1) != 1) {
      _exit(1);
    }
  }

  static inline int done_ = 0;
  bool in_the_midst_ = false;
  pid_t pid_;
};

constexpr const char* kNone = "no file";

class StrangerTest : public BothFormatsTest {
 protected:
  void SetUp() override {
    NewFile kind = GetParam();
    kind.encoding_key = kind.version == 3 ? 0x12345678 : 0;
    static_cast<void>(Database::Create(
        file_, kPassword,
        {{"T", {{"n", kLong}, {"text", kText, 200}}, {{.name = "PrimaryKey", .columns = {{"n"}}, .primary_key = true}}},
         {"U", {{"n", kLong}, {"text", kText, 200}}}},
        pager::NativeFiles(), kind));
    Store("T", 0, 60, 0);
    backup_ = ReadFile(file_);
    Store("T", 60, 90, 0);
    before_ = ReadFile(file_);
    page_ = kind.version == 3 ? 2048 : 4096;
  }

  // Deletes so many rows from the front, adds others behind, and flushes.
  static void Work(Database& database, const char* name, std::int64_t from, std::int64_t to, std::int64_t deleted) {
    Table table = database.OpenTable(name);
    InOneStatement(database, [&] {
      for (Cursor cursor = table.Scan(); cursor.Next();) {
        if (cursor.Integer(0) < deleted) {
          table.Delete(cursor.Row());
        }
      }
    });
    const std::string text(150, 'x');
    for (std::int64_t n = from; n < to; ++n) table.Insert(Row{n, std::string_view(text)});
    database.Flush();
  }
  Database OpenBy(pager::FileSystem& files) const {
    return Database::Open(file_, {.password = kPassword, .code_page = {}}, files);
  }
  void Store(const char* table, std::int64_t from, std::int64_t to, std::int64_t deleted) const {
    WatchedFiles files(0, {});
    Database database = OpenBy(files);
    Work(database, table, from, to, deleted);
  }
  void PutBack(const std::string& content) const {
    fs::remove(file_);
    std::ofstream(file_, std::ios::binary) << content;
    // Systems tell only the tick of their clock in which a file was written.
    fs::last_write_time(file_, fs::last_write_time(file_) - std::chrono::seconds(10));
  }
  std::string Content() const { return fs::exists(file_) ? ReadFile(file_) : kNone; }
  // What our work makes of that content.
  std::string WorkedOn(const std::string& content) const {
    if (content == kNone) {
      return kNone;
    }
    PutBack(content);
    Store("T", 100, 140, 3);
    return Content();
  }

  // `deed`: what the other program does; `changed` and `late`: what the file is by that before our work, and after it.
  void AtEveryMoment(const char* name, const std::function<void()>& deed, const std::string& changed,
                     const std::function<std::string(const std::string&)>& late, Fault refusal) {
    const std::string worked = WorkedOn(before_);
    const std::string worked_on_changed = WorkedOn(changed);
    if (changed != kNone) {
      ASSERT_EQ(Health(OpenBy(pager::NativeFiles())), "sound");
    }
    std::map<std::string, int> ends;
    for (std::uint64_t moment = 1;; moment += pager::kMomentStep) {
      SCOPED_TRACE(std::string(name) + " at moment " + std::to_string(moment));
      PutBack(before_);
      std::optional<Stranger> stranger;
      WatchedFiles files(moment, [&] { stranger.emplace(deed); });
      bool done = false;
      bool came = false;
      try {
        Database database = OpenBy(files);
        Work(database, "T", 100, 140, 3);
        done = true;
        came = stranger.has_value();
      } catch (const pager::PagerError& error) {
        EXPECT_TRUE(error.Kind() == refusal || error.Kind() == Fault::kMissing) << error.what();
        came = true;
      }
      if (!came) {
        std::cout << name << ": " << moment - 1 << " moments, " << ends["refused"] << " refused, "
                  << ends["done on top"] << " done on top, " << ends["too late"] << " too late\n";
        return;
      }
      const std::string content = Content();
      const char* end = !done && content == changed            ? "refused"
                        : done && content == late(worked)      ? "too late"
                        : done && content == worked_on_changed ? "done on top"
                                                               : "neither";
      ASSERT_STRNE(end, "neither") << (done ? "done" : "refused");
      ++ends[end];
      stranger.reset();
      if (done || content == kNone) {
        continue;
      }
      // The next attempt finds nothing in its way.
      Store("T", 100, 140, 3);
      ASSERT_TRUE(Content() == worked_on_changed);
    }
  }

  // The pages in which the other content differs, laid over this one.
  std::string Overlaid(std::string content, const std::string& other) const {
    for (std::size_t at = 0; at < other.size(); at += page_) {
      const std::string page = other.substr(at, page_);
      if (at >= before_.size() || before_.compare(at, page_, page) != 0) {
        if (content.size() < at + page_) {
          content.resize(at + page_);
        }
        content.replace(at, page_, page);
      }
    }
    return content;
  }
  // Writes those pages one by one, as a database program does.
  void WriteOver(const std::string& other) const {
    std::fstream file(file_, std::ios::in | std::ios::out | std::ios::binary);
    for (std::size_t at = 0; at < other.size(); at += page_) {
      if (at < before_.size() && before_.compare(at, page_, other, at, page_) == 0) {
        continue;
      }
      file.seekp(static_cast<std::streamoff>(at));
      file.write(&other[at], static_cast<std::streamsize>(page_));
    }
  }

  std::string backup_;
  std::string before_;
  std::size_t page_ = 0;
};

TEST_P(StrangerTest, WritesToTheFile) {
  // To the same table, or to another one.
  const char* table = IsJet3() ? "U" : "T";
  PutBack(before_);
  Store(table, 200, 240, 0);
  const std::string other = Content();
  AtEveryMoment(
      "writes", [&] { WriteOver(other); }, other, [&](const std::string& worked) { return Overlaid(worked, other); },
      Fault::kChanged);
}

TEST_P(StrangerTest, CopiesReplacesOrRemovesTheFile) {
  const auto always = [](const std::string& content) { return [content](const std::string&) { return content; }; };
  AtEveryMoment(
      "copies", [&] { std::ofstream(file_, std::ios::binary) << backup_; }, backup_, always(backup_), Fault::kChanged);
  const auto replace = [&] {
    std::ofstream(folder_.Path() / "new", std::ios::binary) << backup_;
    fs::rename(folder_.Path() / "new", file_);
  };
  AtEveryMoment("replaces", replace, backup_, always(backup_), Fault::kChanged);
  AtEveryMoment(
      "removes", [&] { fs::remove(file_); }, kNone, always(kNone), Fault::kChanged);
}

TEST_P(StrangerTest, KeepsTheFileOpenOrTakesTheJournal) {
  const auto none = [](const std::string& worked) { return worked; };
  const auto hold = [&] {
    const std::ofstream held(folder_.Path() / "4star.ldb");
    Stranger::Stay();
  };
  AtEveryMoment("opens", hold, before_, none, Fault::kInUse);
  const auto take = [&] { fs::remove(file_.string() + "-journal"); };
  AtEveryMoment("takes journal", take, before_, none, Fault::kChanged);
}

// Killed at every moment of our own work, while this process reads: half of it is never seen.
TEST_P(StrangerTest, IsOurOwnProgramAndKilled) {
  const std::string worked = WorkedOn(before_);
  int ends[2] = {};
  for (std::uint64_t moment = 1;; moment += pager::kMomentStep) {
    SCOPED_TRACE(moment);
    PutBack(before_);
    std::optional<Stranger> killed(std::in_place, [&] {
      WatchedFiles files(moment, Stranger::Stay);
      Database database = OpenBy(files);
      Work(database, "T", 100, 140, 3);
    });
    const bool in_the_midst = killed->InTheMidst();
    // Who opens the file meanwhile may have to wait for that end, and has to get along with what is left behind.
    std::jthread end([&] {
      if (moment % 2 == 0) {
        usleep(1000);
      }
      killed.reset();
    });
    std::optional<Database> reader(Reopen());
    end.join();
    ASSERT_EQ(Health(*reader), "sound");
    reader.reset();
    const bool done = Content() == worked;
    ASSERT_TRUE(done || (in_the_midst && Content() == before_));
    ++ends[done];
    if (!in_the_midst) {
      break;
    }
    if (done) {
      continue;
    }
    Store("T", 100, 140, 3);
    ASSERT_TRUE(Content() == worked);
  }
  std::cout << "killed: " << ends[0] << " times undone, " << ends[1] << " times done\n";
}

INSTANTIATE_TEST_SUITE_P(Formats, StrangerTest, testing::ValuesIn(kFormats), FormatName);

}  // namespace
}  // namespace marlevo::access
