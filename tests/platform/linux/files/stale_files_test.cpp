// Tests of what is removed of unfinished files.
#include "platform/linux/files/stale_files.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;

/// The number of a process that has ended.
std::string endedProcess() {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  return std::to_string(child);
}

TEST(StaleFiles, ThoseOfEndedProcessesAreRemovedAndNothingElse) {
  test::TemporaryFolder folder;
  const std::string ended = ".tellaxis-" + endedProcess();
  const std::string ours = ".tellaxis-" + std::to_string(::getpid());
  for (const std::string& name : {ended, ours, std::string(".tellaxis.lock"), std::string(".tellaxis-"),
                                  std::string(".tellaxis-x"), std::string("tellaxis-1"), std::string("scontrino.txt")})
    folder.write(name, "x");
  removeStaleFiles(folder / "", 0s);
  EXPECT_THAT(folder.names(), testing::UnorderedElementsAre(ours, ".tellaxis.lock", ".tellaxis-", ".tellaxis-x",
                                                            "tellaxis-1", "scontrino.txt"));
}

TEST(StaleFiles, AFileThatChangedJustNowStays) {
  test::TemporaryFolder folder;
  folder.write(".tellaxis-" + endedProcess(), "x");
  removeStaleFiles(folder / "");
  EXPECT_THAT(folder.names(), testing::SizeIs(1));
}

}  // namespace
}  // namespace tellaxis::platform
