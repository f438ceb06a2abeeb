// Tests of the tray icon against a shell that is busy, or starts anew.
#include "platform/windows/tray.h"

#include <gmock/gmock.h>

#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A shell that takes icons or not, and forgets them with its task bar.
class StandInShell : public Shell {
 public:
  bool notifyIcon(DWORD action, NOTIFYICONDATAA& data) override {
    calls.push_back(std::string(action == NIM_ADD      ? "add "
                                : action == NIM_MODIFY ? "modify "
                                                       : "remove ") +
                    data.szTip);
    if (busy) return false;
    const bool done = action == NIM_ADD ? !hasIcon : hasIcon;
    hasIcon = action != NIM_DELETE;
    return done;
  }
  TaskBar taskBar() override { return present; }
  DWORD milliseconds() override { return now += 2'000; }

  void startAnew() {
    ++present.count;
    hasIcon = false;
  }

  bool busy = false;
  bool hasIcon = false;
  TaskBar present = {nullptr, 1};
  DWORD now = 10'000;
  std::vector<std::string> calls;
};

struct WindowsTrayTest : testing::Test {
  test::TraceLog trace;
  StandInShell shell;
  WindowsTray tray{trace, &shell};
  TrayRecord icon{.flags = 7, .tip = "Tellaxis"};

  std::vector<std::string> callsOfKeep() {
    shell.calls.clear();
    tray.keep();
    return shell.calls;
  }
};

TEST_F(WindowsTrayTest, AnIconThatABusyShellRefusedIsAddedUntilItIsThere) {
  shell.busy = true;
  EXPECT_FALSE(tray.notify(TrayAction::add, icon));
  EXPECT_THAT(callsOfKeep(), ElementsAre("add Tellaxis", "modify Tellaxis"));
  shell.busy = false;
  EXPECT_THAT(callsOfKeep(), ElementsAre("add Tellaxis"));
  EXPECT_TRUE(shell.hasIcon);
  EXPECT_THAT(callsOfKeep(), IsEmpty());
  EXPECT_EQ(trace.lines.size(), 1U);
}

TEST_F(WindowsTrayTest, ANewTaskBarGetsTheIconAgain) {
  ASSERT_TRUE(tray.notify(TrayAction::add, icon));
  EXPECT_THAT(callsOfKeep(), IsEmpty());
  shell.startAnew();
  EXPECT_THAT(callsOfKeep(), ElementsAre("add Tellaxis"));
  EXPECT_TRUE(shell.hasIcon);
  EXPECT_THAT(callsOfKeep(), IsEmpty());
}

TEST_F(WindowsTrayTest, AnIconThatIsThereAlreadyIsLeftInPeace) {
  ASSERT_TRUE(tray.notify(TrayAction::add, icon));
  EXPECT_FALSE(tray.notify(TrayAction::add, icon));
  EXPECT_THAT(callsOfKeep(), ElementsAre("add Tellaxis", "modify Tellaxis"));
  EXPECT_THAT(callsOfKeep(), IsEmpty());
}

TEST_F(WindowsTrayTest, ARemovedIconStaysAway) {
  ASSERT_TRUE(tray.notify(TrayAction::add, icon));
  ASSERT_TRUE(tray.notify(TrayAction::remove, icon));
  shell.startAnew();
  EXPECT_THAT(callsOfKeep(), IsEmpty());
  EXPECT_FALSE(shell.hasIcon);
}

}  // namespace
}  // namespace tellaxis::platform
