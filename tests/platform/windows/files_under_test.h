// Files of a Windows computer under test: a folder with files, and a work folder.
#pragma once

#include <gmock/gmock.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "platform/movable.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"
#include "platform/windows/files.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::test {

struct WindowsFilesTest : ::testing::Test {
  TemporaryFolder folder;
  TemporaryFolder work;
  TraceLog trace;
  platform::WindowsFiles files{trace};

  bool onDisk(const std::string& name) { return std::filesystem::exists(folder.path(name)); }

  void hide(const std::string& name) {
    ASSERT_TRUE(SetFileAttributesW(folder.path(name).c_str(), FILE_ATTRIBUTE_HIDDEN));
  }

  /// Somebody else has the file open in this way.
  platform::UniqueHandle hold(const std::string& name, DWORD access, DWORD sharing) {
    return platform::owned(CreateFileW(folder.path(name).c_str(), access, sharing, nullptr, OPEN_EXISTING,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
  }

  /// What could be moved to another folder.
  auto listed() { return test::movable(files, (folder / "").substr(0, (folder / "").size() - 1), work / ""); }

  std::string readThrough(const std::string& path) {
    const auto file = files.openInput(path);
    if (file == nullptr) return "(not opened)";
    std::string text;
    char buffer[3];
    for (;;) {
      const auto got = file->read(buffer);
      if (!got) return "(not read)";
      if (*got == 0) return text;
      text.append(buffer, *got);
    }
  }
};

}  // namespace tellaxis::test
