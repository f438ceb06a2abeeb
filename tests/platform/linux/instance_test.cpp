// Tests of one copy a main folder, of requests to stop, and of what is written at the terminal.
#include "platform/instance.h"
#include "platform/program.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <thread>

#include "platform/console/dialogs.h"
#include "platform/console/trace.h"
#include "platform/console/tray.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Runs `work` in a process of its own and gives its exit status, or minus the signal that ended it.
int inAnotherProcess(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int lockable(const std::string& folder) { return lockMainFolder(folder) != nullptr ? 1 : 0; }

TEST(MainFolderLock, IsRefusedToASecondCopyHoweverTheFolderIsSpelled) {
  test::TemporaryFolder folder;
  fs::create_directories(folder.path("main"));
  fs::create_directories(folder.path("other"));
  fs::create_symlink("main", folder.path("link"));
  const auto lock = lockMainFolder(folder / "main");
  ASSERT_NE(lock, nullptr);
  for (const char* spelling : {"main", "main/", "link", "other/../main", "./main"})
    EXPECT_EQ(inAnotherProcess([&] { return lockable(folder / spelling); }), 0) << spelling;
  EXPECT_EQ(lockMainFolder(folder / "main"), nullptr) << "within one process too";
  EXPECT_EQ(inAnotherProcess([&] { return lockable(folder / "other"); }), 1);
}

TEST(MainFolderLock, IsFreeAgainWhenItsHolderIsGone) {
  test::TemporaryFolder folder;
  EXPECT_EQ(inAnotherProcess([&] {
              const auto lock = lockMainFolder(folder / "");
              if (lock) ::raise(SIGKILL);
              return 0;
            }),
            -SIGKILL);
  { EXPECT_NE(lockMainFolder(folder / ""), nullptr); }
  EXPECT_NE(lockMainFolder(folder / ""), nullptr);
}

TEST(MainFolderLock, LeavesNothingButOneHiddenFile) {
  test::TemporaryFolder folder;
  { const auto lock = lockMainFolder(folder / ""); }
  EXPECT_THAT(folder.names(), testing::ElementsAre(".tellaxis.lock"));
}

TEST(MainFolderLock, IsNotInTheWayOfALockOnTheFolderItself) {
  test::TemporaryFolder folder;
  const auto lock = lockMainFolder(folder / "");
  const int opened = ::open((folder / "").c_str(), O_RDONLY | O_DIRECTORY);
  EXPECT_EQ(::flock(opened, LOCK_EX | LOCK_NB), 0);
  ::close(opened);
}

TEST(MainFolderLock, WorksForEveryUser) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs two users";
  test::TemporaryFolder folder;
  const auto lock = lockMainFolder(folder / "");
  EXPECT_EQ(inAnotherProcess([&] {
              if (::setuid(65534) != 0) return 2;
              return lockable(folder / "");
            }),
            0);
}

TEST(MainFolderLock, IsRefusedInAFolderThatCannotBeWritten) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs two users";
  test::TemporaryFolder folder;
  fs::permissions(folder.path(""), fs::perms(0555));
  EXPECT_EQ(inAnotherProcess([&] {
              if (::setuid(65534) != 0) return 2;
              return lockable(folder / "");
            }),
            0);
  EXPECT_TRUE(folder.names().empty());
}

TEST(MainFolderLock, IsRefusedWhereItsFileMayNotBeWritten) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs two users";
  test::TemporaryFolder folder;
  fs::permissions(folder.path(""), fs::perms(0777));
  folder.write(".tellaxis.lock", "");
  fs::permissions(folder.path(".tellaxis.lock"), fs::perms(0600));
  EXPECT_EQ(inAnotherProcess([&] {
              if (::setuid(65534) != 0) return 2;
              return lockable(folder / "");
            }),
            0);
}

TEST(MainFolderLock, ThatNobodyMayWriteIsNamed) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs two users";
  test::TemporaryFolder folder;
  ASSERT_EQ(::chmod((folder / "").c_str(), 0777), 0);
  std::ofstream(folder.path(".tellaxis.lock")) << "";
  fs::permissions(folder.path(".tellaxis.lock"), fs::perms(0600));
  EXPECT_EQ(inAnotherProcess([&] {
              if (::setuid(65534) != 0) return 2;
              return whyUnlockable(folder / "").find(".tellaxis.lock: accesso negato") != std::string::npos ? 1 : 0;
            }),
            1);
}

TEST(MainFolderLock, IsRefusedWhereItsFileIsSomethingElse) {
  test::TemporaryFolder folder;
  fs::create_symlink(folder / "elsewhere", folder.path(".tellaxis.lock"));
  EXPECT_EQ(lockMainFolder(folder / ""), nullptr);
  EXPECT_FALSE(fs::exists(folder.path("elsewhere")));
}

TEST(MainFolderLock, BelongsToTheFoldersOwnerWhoeverStartedFirst) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs two users";
  test::TemporaryFolder folder;
  ASSERT_EQ(::chown((folder / "").c_str(), 65534, 65534), 0);
  { EXPECT_NE(lockMainFolder(folder / ""), nullptr); }
  EXPECT_EQ(inAnotherProcess([&] {
              if (::setuid(65534) != 0) return 2;
              return lockable(folder / "");
            }),
            1);
}

TEST(MainFolderLock, ItsHolderEndsWhenAnotherProcessAsks) {
  test::TemporaryFolder folder;
  EXPECT_FALSE(requestEnd(folder / "")) << "there is no holder";
  int told[2];
  ASSERT_EQ(::pipe(told), 0);
  const pid_t holder = ::fork();
  if (holder == 0) {
    StopRequest stop;
    const auto lock = lockMainFolder(folder / "");
    if (::write(told[1], "x", 1) != 1) ::_exit(1);
    ::_exit(lock != nullptr && stop.waitFor(20s) ? 7 : 1);
  }
  char sign = 0;
  ASSERT_EQ(::read(told[0], &sign, 1), 1);
  EXPECT_TRUE(requestEnd(folder / ""));
  int status = 0;
  ::waitpid(holder, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 7);
  ::close(told[0]);
  ::close(told[1]);
}

TEST(StopRequest, IsNoticedAtOnceAndStays) {
  for (const int stopSignal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EQ(inAnotherProcess([&] {
                StopRequest stop;
                if (stop.waitFor(1ms) || stop.asked()) return 1;
                const pid_t self = ::getpid();
                std::thread asker([&] {
                  std::this_thread::sleep_for(20ms);
                  ::kill(self, stopSignal);
                });
                const auto start = std::chrono::steady_clock::now();
                const bool asked = stop.waitFor(10s);
                const bool quick = std::chrono::steady_clock::now() - start < 5s;
                asker.join();
                return asked && quick && stop.asked() && stop.waitFor(0ms) ? 0 : 2;
              }),
              0);
  }
}

TEST(StopRequest, ASecondSignalEndsTheProgram) {
  EXPECT_EQ(inAnotherProcess([] {
              StopRequest stop;
              ::raise(SIGINT);
              ::raise(SIGTERM);
              return 0;
            }),
            -SIGTERM);
}

TEST(StopRequest, WaitsNoLongerThanAsked) {
  StopRequest stop;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(stop.waitFor(30ms));
  EXPECT_FALSE(stop.waitFor(-5ms));
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited, 30ms);
  EXPECT_LT(waited, 2s);
}

TEST(StopRequest, PutsTheSignalsBackWhenItIsGone) {
  EXPECT_EQ(inAnotherProcess([] {
              { StopRequest stop; }
              ::raise(SIGTERM);
              return 0;
            }),
            -SIGTERM);
}

TEST(ProgramFolder, HoldsThisProgram) {
  EXPECT_EQ(programFolder(), fs::read_symlink("/proc/self/exe").parent_path().string());
}

TEST(Terminal, AFailingStepIsOneLineInUtf8) {
  testing::internal::CaptureStderr();
  ErrorTrace().failed("move", "C:\\caff\xE8\\a\r\nb", "esiste gi\xE0");
  NoTrace().failed("move", "x", "y");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "passo fallito: move C:\\caffè\\a b: esiste già\n");
}

TEST(Terminal, AMessageIsOneLineAndIsAnswered) {
  testing::internal::CaptureStderr();
  ConsoleDialogs dialogs;
  EXPECT_EQ(dialogs.show("Stampante NON trovata\r\n\"\x80\"", "Tellaxis", Buttons::ok), Answer::ok);
  EXPECT_EQ(dialogs.show("Chiudere il programma", "Tellaxis", Buttons::yesNo), Answer::yes);
  dialogs.processEvents();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Tellaxis: Stampante NON trovata \"€\"\nTellaxis: Chiudere il programma\n");
}

TEST(Terminal, HasNoPlaceForAnIcon) {
  test::TraceLog trace;
  NoTray tray(trace);
  EXPECT_FALSE(tray.available());
  EXPECT_FALSE(tray.notify(TrayAction::add, {}));
  EXPECT_THAT(trace.lines, testing::SizeIs(1));
}

}  // namespace
}  // namespace tellaxis::platform
