// Temporary folder: a folder for one test, removed with all that is in it.
#pragma once

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tellaxis::test {

class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    static int count = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = parent / ("tellaxis-test-" + std::to_string(now) + "-" + std::to_string(++count));
    std::filesystem::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string text() const { return path_.string(); }
  std::filesystem::path path(const std::string& name) const { return path_ / name; }
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }

  std::string write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name).string();
  }

  std::string read(const std::string& name) const {
    std::ifstream stream(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  /// Names of everything in it, sorted.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace tellaxis::test
