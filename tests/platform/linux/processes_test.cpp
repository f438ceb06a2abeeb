// Tests of starting programs on a Linux computer and of waiting for them.
#include "platform/linux/processes.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <thread>

#include "platform/linux/processes/program_file.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr WindowStyle style = WindowStyle::minimisedWithoutFocus;

bool soon(const std::function<bool()>& condition) {
  for (int i = 0; i < 1000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(5ms);
  }
  return false;
}

TEST(ArgumentWords, AreSplitAtBlanksAndGroupedByQuotes) {
  EXPECT_THAT(wordsOf("a  b\tc "), ElementsAre("a", "b", "c"));
  EXPECT_THAT(wordsOf(R"("C:\Access 97\msaccess.exe" /runtime /wrkgrp "C:\M\System.mdw" x)"),
              ElementsAre(R"(C:\Access 97\msaccess.exe)", "/runtime", "/wrkgrp", R"(C:\M\System.mdw)", "x"));
  EXPECT_THAT(wordsOf(R"(a"b c"d "" "open end)"), ElementsAre("ab cd", "", "open end"));
  EXPECT_THAT(wordsOf("  "), IsEmpty());
}

struct LinuxProcessesTest : testing::Test {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  Paths paths{folder / "", {{'C', folder / ""}}};
  LinuxProcesses processes{paths, trace};

  std::string script(const std::string& name, const std::string& lines) {
    folder.write(name, "#!/bin/sh\n" + lines);
    fs::permissions(folder.path(name), fs::perms(0755));
    return folder / name;
  }
  bool waitFor(ProcessId process) {
    const ProcessHandle handle = processes.open(process);
    return processes.wait(handle) && processes.close(handle);
  }
  /// Runs to the end, however short the program's life was.
  bool run(const std::string& commandLine) {
    const ProcessId process = processes.start(commandLine, style);
    return process != 0 && soon([&] { return ::kill(static_cast<pid_t>(process), 0) != 0; });
  }
};

TEST_F(LinuxProcessesTest, AProgramIsFoundByItsWindowsPathInAnyCase) {
  script("OndaDriver.exe", "echo \"$1|$2\" > " + folder / "out");
  EXPECT_TRUE(run("C:\\ONDADRIVER.EXE \"two words\" C:\\File.txt"));
  EXPECT_EQ(folder.read("out"), "two words|C:\\File.txt\n");
}

TEST_F(LinuxProcessesTest, TheEndingMayBeMissingOnEitherSide) {
  script("one.exe", "echo 1 >> " + folder / "out");
  script("two", "echo 2 >> " + folder / "out");
  EXPECT_TRUE(run("C:\\one"));
  EXPECT_TRUE(run("C:\\two.exe"));
  EXPECT_EQ(folder.read("out"), "1\n2\n");
}

TEST_F(LinuxProcessesTest, ABareNameIsLookedUpOnTheSearchPath) {
  EXPECT_TRUE(run("touch.EXE " + folder / "out"));
  EXPECT_TRUE(fs::exists(folder.path("out")));
}

TEST_F(LinuxProcessesTest, WhatCannotBeStartedGivesNoneAndSaysWhy) {
  folder.write("data.exe", "no program");
  EXPECT_EQ(processes.start("C:\\none.exe arguments", style), 0U);
  EXPECT_EQ(processes.start("no-such-program-anywhere", style), 0U);
  EXPECT_EQ(processes.start("C:\\data.exe", style), 0U);
  EXPECT_EQ(processes.start("", style), 0U);
  EXPECT_EQ(processes.start("  ", style), 0U);
  EXPECT_THAT(
      trace.lines,
      ElementsAre("start | C:\\none.exe arguments | non esiste", "start | no-such-program-anywhere | non esiste",
                  "start | C:\\data.exe | accesso negato", HasSubstr("programma"), HasSubstr("programma")));
}

TEST_F(LinuxProcessesTest, WaitingEndsWithTheProgram) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(waitFor(processes.start("sleep 0.2", style)));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 150ms);
}

TEST_F(LinuxProcessesTest, NoHandleIsNothingToWaitFor) {
  EXPECT_FALSE(processes.wait(0));
  EXPECT_FALSE(processes.wait(1));
  EXPECT_FALSE(processes.close(0));
  EXPECT_EQ(processes.open(0), 0U);
  EXPECT_EQ(processes.open(static_cast<ProcessId>(::getpid())), 0U) << "not a program that was started here";
  EXPECT_THAT(trace.lines, SizeIs(5));
}

TEST_F(LinuxProcessesTest, HandlesAreNeverOneAndAreClosedOnce) {
  const ProcessId process = processes.start("sleep 0.1", style);
  const ProcessHandle handle = processes.open(process);
  EXPECT_GT(handle, 1U);
  EXPECT_TRUE(processes.wait(handle));
  EXPECT_TRUE(processes.wait(handle)) << "it has ended still";
  EXPECT_TRUE(processes.close(handle));
  EXPECT_FALSE(processes.close(handle));
}

TEST_F(LinuxProcessesTest, NobodyStaysBehindAsAZombie) {
  std::vector<ProcessId> started;
  for (int i = 0; i < 20; ++i) started.push_back(processes.start("true", style));
  for (const ProcessId process : started) {
    ASSERT_NE(process, 0U);
    EXPECT_TRUE(soon([&] { return !fs::exists("/proc/" + std::to_string(process)); })) << process;
  }
}

/// The signals of a line of /proc/PID/status ("SigIgn"), as bits.
unsigned long long signalsIn(const std::string& status, const std::string& line) {
  return std::stoull(status.substr(status.find(line + ":") + line.size() + 1), nullptr, 16);
}

TEST_F(LinuxProcessesTest, AProgramBeginsWithAllSignalsAsUsual) {
  struct sigaction before {};
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  ::sigaction(SIGTERM, &ignore, &before);
  sigset_t blocked;
  sigset_t mask;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGINT);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &mask);
  EXPECT_TRUE(run("cp /proc/self/status " + folder / "status"));
  ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
  ::sigaction(SIGTERM, &before, nullptr);
  constexpr unsigned long long all = 0x7FFFFFFF;
  EXPECT_EQ(signalsIn(folder.read("status"), "SigBlk") & all, 0U);
  EXPECT_EQ(signalsIn(folder.read("status"), "SigIgn") & all, 0U);
}

TEST_F(LinuxProcessesTest, AProgramHasNoneOfOurDescriptorsAndASessionOfItsOwn) {
  const Descriptor ours(::fcntl(STDIN_FILENO, F_DUPFD, 200));
  script("look", "cd " + folder / "" + "\nls /proc/$$/fd > fds\nin=$(readlink /proc/$$/fd/0)\n" +
                     "out=$(readlink /proc/$$/fd/1)\necho $in $out > streams\n"
                     "cut -d' ' -f6 /proc/$$/stat > session\necho $$ >> session\n");
  EXPECT_TRUE(run("C:\\look"));
  EXPECT_THAT(folder.read("fds"), testing::AllOf(HasSubstr("0\n1\n"), testing::Not(HasSubstr("200"))));
  EXPECT_EQ(folder.read("streams"), "/dev/null /dev/null\n");
  const std::string session = folder.read("session");
  const std::string leader = session.substr(0, session.find('\n') + 1);
  EXPECT_EQ(session, leader + leader) << "out of reach of Ctrl-C";
}

TEST_F(LinuxProcessesTest, ABatchFileIsCarriedOutLineByLine) {
  folder.write("Dial.bat",
               "@echo off\r\nREM a remark (\r\n:: another\r\ncd " + folder / "" +
                   "\r\necho one > out\r\nif ( this is no line\r\nno-such-command\r\nfalse\r\n\r\nkept=2\r\n"
                   "@echo $kept \"$1\" >> out\r\nread answer\r\necho last >> out");
  const ProcessId process = processes.start("C:\\DIAL.BAT argument", style);
  ASSERT_NE(process, 0U);
  EXPECT_TRUE(soon([&] { return ::kill(static_cast<pid_t>(process), 0) != 0; }));
  EXPECT_EQ(folder.read("out"), "one\n2 argument\nlast\n");
}

TEST_F(LinuxProcessesTest, ABatchFileCanBeWaitedFor) {
  folder.write("wait.bat", "sleep 0.2\r\ntouch " + folder / "out" + "\r\n");
  EXPECT_TRUE(waitFor(processes.start("\"C:\\wait.bat\"", style)));
  EXPECT_TRUE(fs::exists(folder.path("out")));
}

TEST(LinuxProcesses, ProgramsOutliveTheOneThatStartedThem) {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  const Paths paths(folder / "", {});
  ProcessId process = 0;
  {
    LinuxProcesses processes(paths, trace);
    process = processes.start("sleep 30", style);
  }
  ASSERT_NE(process, 0U);
  EXPECT_EQ(::kill(static_cast<pid_t>(process), 0), 0);
  ::kill(static_cast<pid_t>(process), SIGKILL);
  ::waitpid(static_cast<pid_t>(process), nullptr, 0);
}

}  // namespace
}  // namespace tellaxis::platform
