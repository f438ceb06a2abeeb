// Files folder: a folder with the files of a Linux computer in it, for the tests of each operation.
#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "platform/linux/files.h"
#include "platform/linux/kernel/descriptor.h"
#include "platform/movable.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

/// Root may do everything; what others may not do is tried as one of them.
class AsNobody {
 public:
  AsNobody() : before_(::geteuid()) {
    constexpr uid_t nobody = 65534;
    EXPECT_EQ(::seteuid(before_ == 0 ? nobody : before_), 0);
  }
  ~AsNobody() { EXPECT_EQ(::seteuid(before_), 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

 private:
  uid_t before_;
};

/// Another user's files need another user.
inline bool isRoot() { return ::geteuid() == 0; }

struct LinuxFilesTest : testing::Test {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  test::TemporaryFolder work;
  Paths paths{folder / "", {{'C', folder / ""}, {'D', work / ""}}};
  LinuxFiles files{paths, trace};

  void makeFolder(const std::string& name) { fs::create_directories(folder.path(name)); }
  void makePipe(const std::string& name) { ASSERT_EQ(::mkfifo((folder / name).c_str(), 0600), 0); }
  bool onDisk(const std::string& name) { return fs::exists(fs::symlink_status(folder.path(name))); }
  mode_t permissions(const std::string& name) {
    struct stat status {};
    EXPECT_EQ(::stat((folder / name).c_str(), &status), 0);
    return status.st_mode & 07777;
  }
  /// What could be moved to D:, which is another folder.
  auto listed() { return test::movable(files, "C:\\", "D:\\"); }
  void makeOpenToAll(const test::TemporaryFolder& opened, mode_t more = 0) {
    ASSERT_EQ(::chmod((opened / "").c_str(), 0777 | more), 0);
  }
  std::string readThrough(const std::string& path) {
    std::string text;
    const auto file = files.openInput(path);
    if (file == nullptr) return "(not opened)";
    char buffer[3];
    for (;;) {
      const auto got = file->read(buffer);
      if (!got) return "(not read)";
      if (*got == 0) return text;
      text.append(buffer, *got);
    }
  }
};

}  // namespace tellaxis::platform
