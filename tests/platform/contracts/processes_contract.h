// Processes contract: what every implementation of processes.h owes its callers.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "platform/processes.h"

namespace tellaxis::test {

/// A Desk makes a computer whose programs note their arguments:
///   platform::Processes& processes();
///   std::string program(name): installs one under that name, with folders; its path as a command line writes it
///   std::string notes(name): one line for each run of it that has ended, its arguments with "|" between them
///   int failures(): steps that were reported as failed
template <class Desk>
struct ProcessesContract : testing::Test {
  static constexpr platform::WindowStyle style = platform::WindowStyle::hidden;

  Desk desk;
  platform::Processes& processes = desk.processes();

  /// True when the program was started, waited for and let go.
  bool runs(const std::string& commandLine) {
    const platform::ProcessId process = processes.start(commandLine, style);
    if (process == 0) return false;
    const platform::ProcessHandle handle = processes.open(process);
    return processes.wait(handle) && processes.close(handle);
  }
};

TYPED_TEST_SUITE_P(ProcessesContract);

TYPED_TEST_P(ProcessesContract, AWaitEndsWithTheProgramAndIsTrueEverAfter) {
  const std::string program = this->desk.program("driver.exe");
  const platform::ProcessId process = this->processes.start(program + " wait", this->style);
  ASSERT_NE(process, 0U);
  const platform::ProcessHandle handle = this->processes.open(process);
  ASSERT_GT(handle, 1U);
  EXPECT_TRUE(this->processes.wait(handle));
  EXPECT_EQ(this->desk.notes("driver.exe"), "wait\n");
  EXPECT_TRUE(this->processes.wait(handle));
  EXPECT_TRUE(this->processes.close(handle));
  EXPECT_EQ(this->desk.failures(), 0);
}

TYPED_TEST_P(ProcessesContract, AProgramInAFolderWithBlanksNeedsNoQuotes) {
  const std::string program = this->desk.program("Program Files (x86)/Onda Driver/driver.exe");
  EXPECT_TRUE(this->runs(program + " wait C:\\File.txt \"due parole\""));
  EXPECT_TRUE(this->runs("\"" + program + "\" wait x"));
  EXPECT_TRUE(this->runs(program.substr(0, program.size() - 4) + " wait y"));
  EXPECT_EQ(this->desk.notes("Program Files (x86)/Onda Driver/driver.exe"),
            "wait|C:\\File.txt|due parole\nwait|x\nwait|y\n");
  EXPECT_EQ(this->desk.failures(), 0);
}

TYPED_TEST_P(ProcessesContract, TheShorterOfTwoProgramsIsTheOneThatIsMeant) {
  this->desk.program("La.exe");
  const std::string program = this->desk.program("La Cassa/driver.exe");
  EXPECT_TRUE(this->runs(program + " wait"));
  EXPECT_EQ(this->desk.notes("La Cassa/driver.exe"), "");
}

TYPED_TEST_P(ProcessesContract, WhatDoesNotExistGivesNoneAndIsReported) {
  const std::string program = this->desk.program("La Cassa/driver.exe");
  for (const std::string& line : {program + "x", "\"" + program + " wait\"", std::string("non-esiste-affatto"),
                                  std::string(), std::string("  "), std::string("\"\" wait")})
    EXPECT_EQ(this->processes.start(line, this->style), 0U) << line;
  EXPECT_EQ(this->desk.failures(), 6);
}

TYPED_TEST_P(ProcessesContract, NoProcessHasNoHandleAndNoHandleIsNothingToWaitFor) {
  EXPECT_EQ(this->processes.open(0), 0U);
  EXPECT_FALSE(this->processes.wait(0));
  EXPECT_FALSE(this->processes.close(0));
  EXPECT_EQ(this->desk.failures(), 3);
}

TYPED_TEST_P(ProcessesContract, AHandleIsClosedOnce) {
  const platform::ProcessId process = this->processes.start(this->desk.program("driver.exe") + " wait", this->style);
  const platform::ProcessHandle handle = this->processes.open(process);
  EXPECT_TRUE(this->processes.wait(handle));
  EXPECT_TRUE(this->processes.close(handle));
  EXPECT_FALSE(this->processes.close(handle));
  EXPECT_FALSE(this->processes.wait(handle));
  EXPECT_EQ(this->desk.failures(), 2);
}

REGISTER_TYPED_TEST_SUITE_P(ProcessesContract, AWaitEndsWithTheProgramAndIsTrueEverAfter,
                            AProgramInAFolderWithBlanksNeedsNoQuotes, TheShorterOfTwoProgramsIsTheOneThatIsMeant,
                            WhatDoesNotExistGivesNoneAndIsReported, NoProcessHasNoHandleAndNoHandleIsNothingToWaitFor,
                            AHandleIsClosedOnce);

}  // namespace tellaxis::test
