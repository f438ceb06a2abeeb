// Tests of what is known of a file without opening it: its identity, and whether it could be deleted.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

/// Root may do everything: what others may not do is tried as one of them.
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

struct FileStatus : testing::Test {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  Paths paths{folder / "", {{'C', folder / ""}}};
  LinuxFiles files{paths, trace};
};

TEST_F(FileStatus, AFileKeepsItsIdentityUntilItIsWrittenOrReplaced) {
  folder.write("rf.txt", "RR uno\r\n");
  const auto first = files.identity("C:\\rf.txt");
  ASSERT_TRUE(first);
  EXPECT_EQ(files.identity("C:\\RF.TXT"), first);
  folder.write("nuovo", "RR due\r\n");
  const auto other = files.identity("C:\\nuovo");
  EXPECT_NE(other, first);
  std::filesystem::rename(folder.path("nuovo"), folder.path("rf.txt"));
  EXPECT_EQ(files.identity("C:\\rf.txt"), other) << "the file that took its place";
  folder.write("rf.txt", "RR due\r\nRR tre\r\n");
  EXPECT_NE(files.identity("C:\\rf.txt"), other) << "written anew";
}

TEST_F(FileStatus, AMissingFileHasNoIdentityAndCannotBeRemoved) {
  EXPECT_EQ(files.identity("C:\\rf.txt"), std::nullopt);
  EXPECT_FALSE(files.canRemove("C:\\rf.txt"));
  EXPECT_EQ(trace.lines.size(), 2U);
}

TEST_F(FileStatus, AFileInAFolderThatTakesNoChangesCannotBeRemoved) {
  folder.write("rf.txt", "");
  EXPECT_TRUE(files.canRemove("C:\\rf.txt"));
  ASSERT_EQ(::chmod((folder / "").c_str(), 0555), 0);
  {
    const AsNobody nobody;
    EXPECT_FALSE(files.canRemove("C:\\rf.txt"));
    EXPECT_FALSE(files.remove("C:\\rf.txt"));
  }
  ASSERT_EQ(::chmod((folder / "").c_str(), 0777), 0);
  ASSERT_EQ(::chmod((folder / "rf.txt").c_str(), 0444), 0);
  const AsNobody nobody;
  EXPECT_TRUE(files.canRemove("C:\\rf.txt")) << "the file's own permissions don't count";
  EXPECT_TRUE(files.remove("C:\\rf.txt"));
}

TEST_F(FileStatus, AnotherUsersFileInAStickyFolderCannotBeRemoved) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs a second user, hence root";
  folder.write("rf.txt", "");
  ASSERT_EQ(::chmod((folder / "").c_str(), 01777), 0);
  const AsNobody nobody;
  EXPECT_FALSE(files.canRemove("C:\\rf.txt"));
  EXPECT_FALSE(files.remove("C:\\rf.txt"));
}

}  // namespace
}  // namespace tellaxis::platform
