// Ini folder: a folder of its own for one test, with profiles on a file of it.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/profiles.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {

inline std::string asGiven(std::string_view path) { return std::string(path); }

class IniFolder : public testing::Test {
 protected:
  explicit IniFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) : folder_(parent) {}

  std::string content() const { return folder_.read("_Test.ini"); }
  void put(const std::string& text) const { folder_.write("_Test.ini", text); }
  std::vector<std::string> names() const { return folder_.names(); }

  struct stat facts() const {
    struct stat result = {};
    EXPECT_EQ(lstat(file_.c_str(), &result), 0);
    return result;
  }

  std::string get(std::string_view section, std::string_view key) {
    return profiles_.read(section, key, "DEF", 255, file_);
  }
  bool set(std::string_view section, std::string_view key, std::string_view value) {
    return profiles_.write(section, key, value, file_);
  }

  /// The line of the trace for a failure on the file.
  std::string report(const std::string& operation, const std::string& reason) const {
    return operation + " | " + file_ + " | " + reason;
  }

  test::TemporaryFolder folder_;
  std::string file_ = folder_ / "_Test.ini";
  test::TraceLog trace_;
  LinuxProfiles profiles_{
      asGiven, trace_, {.read = std::chrono::milliseconds(10), .write = std::chrono::milliseconds(100)}};
};

}  // namespace tellaxis::platform
