// Tests of what is removed of unfinished files.
#include "platform/windows/files/stale_files.h"

#include <gmock/gmock.h>

#include "platform/temporary_folder.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;

/// No process has a number so great.
constexpr const char* ended = "~tlx4294967291-1.tmp";

TEST(WindowsStaleFiles, ThoseOfEndedProcessesAreRemovedAndNothingElse) {
  const test::TemporaryFolder folder;
  const std::string ours = "~tlx" + std::to_string(GetCurrentProcessId()) + "-7.tmp";
  for (const std::string& name : {std::string(ended), ours, std::string("~tlx.tmp"), std::string("~tlxa-1.tmp"),
                                  std::string("~tlx4294967291-1.txt"), std::string("scontrino.txt")})
    folder.write(name, "x");
  removeStaleFiles(wide(folder / ""), 0s);
  EXPECT_THAT(folder.names(),
              testing::UnorderedElementsAre(ours, "~tlx.tmp", "~tlxa-1.tmp", "~tlx4294967291-1.txt", "scontrino.txt"));
}

TEST(WindowsStaleFiles, AFileThatChangedJustNowStays) {
  const test::TemporaryFolder folder;
  folder.write(ended, "x");
  removeStaleFiles(wide(folder / ""));
  EXPECT_THAT(folder.names(), testing::SizeIs(1));
}

}  // namespace
}  // namespace tellaxis::platform
