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

using testing_support::ScratchFolder;

// A child process with a pipe each way.
class Child {
 public:
  explicit Child(const std::function<void(Child&)>& work) {
    int to_child[2];
    int to_parent[2];
    if (pipe(to_child) != 0 || pipe(to_parent) != 0) throw std::runtime_error("no pipe");
    pid_ = fork();
    const bool child = pid_ == 0;
    in_ = child ? to_child[0] : to_parent[0];
    out_ = child ? to_parent[1] : to_child[1];
    close(child ? to_child[1] : to_parent[1]);
    close(child ? to_parent[0] : to_child[0]);
    if (!child) return;
    int status = 0;
    try {
      work(*this);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "child: %s\n", error.what());
      status = 1;
    }
    _exit(status);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    close(in_);
    close(out_);
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
  }

  void Tell(char what) {
    if (write(out_, &what, 1) != 1) throw std::runtime_error("nobody listens");
  }
  // 0 when the other side is gone.
  char Hear() {
    char what = 0;
    return read(in_, &what, 1) == 1 ? what : '\0';
  }
  int Join() {
    int status = -1;
    waitpid(std::exchange(pid_, 0), &status, 0);
    return status;
  }

 private:
  pid_t pid_;
  int in_;
  int out_;
};

TEST(Processes, OneWritesOthersRead) {
  ScratchFolder folder;
  const std::filesystem::path path = folder.Path() / u8"四星.mdb";
  NewPager(path, NativeFiles(), 40).reset();
  Child child([&](Child& parent) {
    std::shared_ptr<Pager> pager = Pager::Open(path, TestProbe);
    Store(*pager, {7}, 0, 70);
    parent.Tell('1');
    parent.Hear();
    pager.reset();
    parent.Tell('2');
  });
  ASSERT_EQ(child.Hear(), '1');
  const std::shared_ptr<Pager> pager = Pager::Open(path, TestProbe);
  EXPECT_FALSE(pager->ReadOnly());
  EXPECT_EQ(ReadAll(*pager)[7], 70U);
  EXPECT_THROW(pager->Begin(), PagerError);
  EXPECT_EQ(ReadAll(*pager)[7], 70U);
  child.Tell('x');
  ASSERT_EQ(child.Hear(), '2');
  Store(*pager, {8}, 0, 80);
  EXPECT_EQ(child.Join(), 0);
}

TEST(Processes, ReadersSeeWholeFlushesAndDoNotKeepTheWriterOut) {
  constexpr std::uint32_t kFlushes = 40;
  ScratchFolder folder;
  const std::filesystem::path path = folder.Path() / "file";
  NewPager(path, NativeFiles(), 60).reset();
  // Reads again and again without a pause until the last flush is in sight.
  const auto read = [&](Child& parent) {
    parent.Hear();
    const std::shared_ptr<Pager> pager = Pager::Open(path, TestProbe, NativeFiles(), kSmall);
    for (std::uint32_t last = 0; last < kFlushes;) {
      const Image image = ReadAll(*pager);
      if (std::ranges::count(image, image[0]) != std::ssize(image)) throw std::runtime_error("a mixture of flushes");
      if (image[0] < last) throw std::runtime_error("an older flush than before");
      last = image[0];
    }
  };
  Child one(read);
  Child two(read);
  const std::shared_ptr<Pager> pager = Pager::Open(path, TestProbe, NativeFiles(), kSmall);
  one.Tell('x');
  two.Tell('x');
  for (std::uint32_t flush = 1; flush <= kFlushes; ++flush) {
    Statement statement(*pager);
    if (flush % 10 == 0) AppendPage(*pager, flush);
    for (std::uint32_t page = 0; page < pager->PageCount(); ++page) ChangePage(*pager, page, flush);
    statement.Commit();
    pager->Flush();
  }
  EXPECT_EQ(one.Join(), 0);
  EXPECT_EQ(two.Join(), 0);
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
  const std::shared_ptr<Pager> pager = Pager::Open(path, [](std::span<const std::byte>) {
    return PageFormat{kPage, {}};
  });
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
