// Several processes and the system's real files: locks, rights, memory. Children are forked before
// this process opens a file, since an inherited handle would share its locks.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>

#include "platform/pager/test_pages.h"
#include "support/scratch_folder.h"

namespace marlevo::pager {
namespace {

using test::ScratchFolder;

// Another process and its work.
class Child {
 public:
  explicit Child(const std::function<void()>& work) : pid_(fork()) {
    if (pid_ != 0) {
      return;
    }
    alarm(120);  // the end of a child that waits for what never comes
    int status = 0;
    try {
      work();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "child: %s\n", error.what());
      status = 1;
    }
    _exit(status);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      Join();
    }
  }

  int Join() {
    int status = -1;
    waitpid(std::exchange(pid_, 0), &status, 0);
    return status;
  }

 private:
  pid_t pid_;
};

TEST(Processes, ReadersSeeWholeFlushesAndWriteWhenTheWriterIsGone) {
  constexpr std::uint32_t kFlushes = 40;
  ScratchFolder folder;
  const std::filesystem::path path = folder.Path() / "file";
  NewPager(path, NativeFiles(), 60).reset();
  int start[2];
  ASSERT_EQ(pipe(start), 0);
  // Reads again and again without a pause until the last flush is in sight, then adds a page as soon as nobody else
  // writes.
  const auto follow = [&] {
    char told = 0;
    if (read(start[0], &told, 1) != 1) {
      throw std::runtime_error("nobody writes");
    }
    const std::shared_ptr<Pager> pager = Pager::Open(path, TestProbe, NativeFiles(), kSmall);
    for (std::uint32_t last = 0; last < kFlushes;) {
      const Image image = ReadAll(*pager);
      if (std::ranges::count(image, image[0]) != std::ssize(image)) {
        throw std::runtime_error("a mixture of flushes");
      }
      if (image[0] < last) {
        throw std::runtime_error("an older flush than before");
      }
      last = image[0];
    }
    for (bool stored = false; !stored;) {
      try {
        Store(*pager, {}, 1, kFlushes + 1);
        stored = true;
      } catch (const PagerError&) {
        // Not yet.
      }
    }
  };
  Child one(follow);
  Child two(follow);
  std::shared_ptr<Pager> pager = Pager::Open(path, TestProbe, NativeFiles(), kSmall);
  ASSERT_EQ(write(start[1], "go", 2), 2);
  for (std::uint32_t flush = 1; flush <= kFlushes; ++flush) {
    Statement statement(*pager);
    if (flush % 10 == 0) {
      AppendPage(*pager, flush);
    }
    for (std::uint32_t page = 0; page < pager->PageCount(); ++page) {
      ChangePage(*pager, page, flush);
    }
    statement.Commit();
    pager->Flush();
  }
  pager.reset();
  EXPECT_EQ(one.Join(), 0);
  EXPECT_EQ(two.Join(), 0);
  const Image image = ReadAll(*Pager::Open(path, TestProbe));
  EXPECT_EQ(image.size(), 60U + kFlushes / 10 + 2);
  EXPECT_EQ(std::ranges::count(image, kFlushes + 1), 2);
}

TEST(Processes, FileThatMayNotBeWritten) {
  ScratchFolder folder;
  const std::filesystem::path path = folder.Path() / "file";
  NewPager(path, NativeFiles(), 4).reset();
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  const std::shared_ptr<Pager> pager = Pager::Open(path, TestProbe);
  EXPECT_TRUE(pager->ReadOnly());
  EXPECT_EQ(ReadAll(*pager).size(), 4U);
  EXPECT_THROW(pager->Begin(), PagerError);
  EXPECT_FALSE(std::filesystem::exists(path.string() + "-journal"));
}

std::size_t PeakMemory() {
  struct rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

TEST(Processes, MemoryIsBoundedWhateverTheSize) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "memory is not the program's own under the sanitizer";
#endif
  constexpr std::size_t kPage = 4096;
  constexpr std::uint32_t kPages = 40000;
  ScratchFolder folder;
  const std::filesystem::path path = folder.Path() / "file";
  std::ofstream(path).put('x');
  std::filesystem::resize_file(path, kPages * kPage);
  const std::size_t before = PeakMemory();
  const auto format = [](std::span<const std::byte>) { return PageFormat{kPage, {}}; };
  const std::shared_ptr<Pager> pager = Pager::Open(path, format);
  {
    Statement statement(*pager);
    for (std::uint32_t page = 0; page < kPages; ++page) {
      const PageEdit edit = pager->Change(page);
      edit.Bytes()[page % kPage] = std::byte{1};
    }
    statement.Commit();
  }
  for (std::uint32_t page = 0; page < kPages; ++page) {
    const PageRef ref = pager->Read(page);
    ASSERT_EQ(ref.Bytes()[page % kPage], std::byte{1});
  }
  pager->Flush();
  EXPECT_LT(PeakMemory() - before, std::size_t{64} << 20);
}

}  // namespace
}  // namespace marlevo::pager
