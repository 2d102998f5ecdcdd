// A new empty folder for one test, gone with everything in it when the test ends. Its name has a blank and Chinese
// characters, as folders of operators have.
#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace marlevo::test {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / u8"marlevo 測試 ";
      path_ += std::to_string(random());
    } while (!std::filesystem::create_directory(path_));
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace marlevo::test
