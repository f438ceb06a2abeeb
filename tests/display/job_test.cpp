// Display: the bytes of every family, the use of the port, and what happens when a step fails.
#include "display/job.h"

#include <fstream>
#include <iterator>

#include "core/bridge.h"
#include "display/families.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepFailingSteps;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr auto jobFile = "C:\\MERIDIA\\Display.txt";
constexpr auto opened = "serial open COM3 9600,N,8,1 buffers 1024 512";

std::string dataFile(const std::string& name) {
  std::ifstream file(TEST_DATA "/data/" + name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A cash desk with a display of this family on COM3.
struct Desk {
  explicit Desk(std::string_view family, std::int16_t delay = 0) {
    bridge.settings.Display_Type = family;
    bridge.settings.Display_File = jobFile;
    bridge.settings.Display_Delay = delay;
    bridge.form.MSComm1.CommPort(3);
  }

  fake::Computer computer;
  Bridge bridge{computer.host};

  void show(std::string_view job) {
    computer.files.put(jobFile, job);
    computer.journal.clear();
    LanciaFileDisplay(bridge);
  }

  Calls calls() const { return computer.journal.calls(); }
  Calls serialCalls() const { return computer.journal.callsThatBegin("serial "); }

  Calls writes() const {
    constexpr std::string_view beginning = "serial write COM3 ";
    Calls texts;
    for (const std::string& call : computer.journal.callsThatBegin(beginning))
      texts.push_back(call.substr(beginning.size()));
    return texts;
  }

  std::string bytes() const {
    std::string all;
    for (const std::string& text : writes()) all += text;
    return all;
  }
};

struct Golden {
  std::string_view family;
  std::string job;
  std::string bytes;
};

class GoldenBytes : public testing::TestWithParam<Golden> {};

TEST_P(GoldenBytes, AreSentForTheFamily) {
  Desk desk(GetParam().family);
  desk.show(dataFile(GetParam().job));
  EXPECT_EQ(desk.bytes(), dataFile(GetParam().bytes));
  EXPECT_FALSE(desk.computer.files.has(jobFile));
}

TEST_P(GoldenBytes, AreTheSameForTheSecondJob) {
  Desk desk(GetParam().family);
  desk.show("prima");
  desk.show(dataFile(GetParam().job));
  EXPECT_EQ(desk.bytes(), dataFile(GetParam().bytes));
}

INSTANTIATE_TEST_SUITE_P(LanciaFileDisplay, GoldenBytes,
                         testing::Values(Golden{"WINCOR-NIXDORF", "job.txt", "wincor_nixdorf.bin"},
                                         Golden{"ASEM", "job.txt", "asem.bin"},
                                         Golden{"KUBE-D", "job_one_line.txt", "kube_d.bin"},
                                         Golden{"CD1-01", "job.txt", "cd1_01.bin"},
                                         Golden{"POSLINE", "job.txt", "posline.bin"}));

TEST(LanciaFileDisplay, CutsPoslinesUpperLineTo19CharactersAndItsLowerLineTo20) {
  Desk desk("POSLINE");
  desk.show("12345678901234567890123\r\n12345678901234567890123\r\n");
  EXPECT_THAT(desk.writes(), ElementsAre("\033A1234567890123456789\r", "\033B12345678901234567890\r"));
}

TEST(LanciaFileDisplay, CutsTheOtherFamiliesLinesTo20Characters) {
  for (const std::string_view family : {"WINCOR-NIXDORF", "ASEM", "CD1-01"}) {
    Desk desk(family);
    desk.show("12345678901234567890123\r\nabcdefghijklmnopqrstuvwxyz\r\n");
    EXPECT_NE(desk.writes().at(0).find("12345678901234567890"), std::string::npos);
    EXPECT_EQ(desk.writes().at(0).find("123456789012345678901"), std::string::npos);
    EXPECT_NE(desk.writes().at(1).find("abcdefghijklmnopqrst"), std::string::npos);
    EXPECT_EQ(desk.writes().at(1).find("abcdefghijklmnopqrstu"), std::string::npos);
  }
}

TEST(LanciaFileDisplay, CutsKubesLineTo40Characters) {
  Desk desk("KUBE-D");
  desk.show("1234567890123456789012345678901234567890123\r\n");
  EXPECT_THAT(desk.writes(), ElementsAre("1234567890123456789012345678901234567890"));
}

TEST(LanciaFileDisplay, SendsAShorterLineWithoutPadding) {
  Desk desk("ASEM");
  desk.show("ab\r\n\r\n");
  EXPECT_THAT(desk.writes(), ElementsAre("\033QAab\r", "\033QB\r"));
}

TEST(LanciaFileDisplay, SendsEveryLineFromTheThirdOnToTheLowerLineToo) {
  Desk desk("WINCOR-NIXDORF");
  desk.show("uno\r\ndue\r\ntre\r\nquattro");
  EXPECT_THAT(desk.writes(), ElementsAre("\033[1;1Huno", "\033[2;1Hdue", "\033[2;1Htre", "\033[2;1Hquattro"));
}

TEST(LanciaFileDisplay, ShowsOnlyTheFirstLineOnAKube) {
  Desk desk("KUBE-D");
  desk.show("uno\r\ndue\r\n");
  EXPECT_THAT(desk.writes(), ElementsAre("uno"));
}

TEST(LanciaFileDisplay, SendsNothingOfAnEmptyFileAndDeletesIt) {
  for (const DisplayFamily& family : displayFamilies) {
    Desk desk(family.name);
    desk.show("");
    EXPECT_THAT(desk.writes(), IsEmpty()) << family.name;
    EXPECT_FALSE(desk.computer.files.has(jobFile)) << family.name;
  }
}

TEST(LanciaFileDisplay, OpensAndClosesAWincorsPortForAnEmptyFileToo) {
  Desk desk("WINCOR-NIXDORF");
  desk.show("");
  EXPECT_THAT(desk.serialCalls(), ElementsAre(opened, "serial close COM3"));
}

TEST(LanciaFileDisplay, KeepsTheFileOfAnUnknownFamilyAndStillPauses) {
  for (const std::string_view family : {"NON PRESENTE", "asem", "ASEM ", ""}) {
    Desk desk(family, 30);
    desk.show("uno\r\n");
    EXPECT_THAT(desk.calls(), ElementsAre("sleep 30")) << family;
    EXPECT_TRUE(desk.computer.files.has(jobFile));
    LanciaFileDisplay(desk.bridge);
    EXPECT_THAT(desk.calls(), ElementsAre("sleep 60")) << family;
  }
}

TEST(LanciaFileDisplay, PausesAfterTheFileWasDeletedInEveryFamily) {
  for (const DisplayFamily& family : displayFamilies) {
    Desk desk(family.name, 30);
    desk.show("uno\r\n");
    ASSERT_GE(desk.calls().size(), 2U);
    EXPECT_EQ(desk.calls().back(), "sleep 30") << family.name;
    EXPECT_EQ(desk.calls().at(desk.calls().size() - 2), "remove " + std::string(jobFile)) << family.name;
  }
}

TEST(LanciaFileDisplay, DoesNotPauseForADelayOf0) {
  for (const DisplayFamily& family : displayFamilies) {
    Desk desk(family.name, 0);
    desk.show("uno\r\n");
    EXPECT_THAT(desk.computer.journal.callsThatBegin("sleep"), IsEmpty()) << family.name;
  }
}

TEST(LanciaFileDisplay, LetsTheWindowHandleNothingWhileItPauses) {
  Desk desk("ASEM", 100);
  desk.show("uno\r\n");
  EXPECT_THAT(desk.computer.journal.callsThatBegin("processEvents"), IsEmpty());
}

TEST(LanciaFileDisplay, ClosesAWincorsOpenPortAndOpensItAgainBeforeSending) {
  Desk desk("WINCOR-NIXDORF");
  desk.bridge.form.MSComm1.PortOpen(true);
  desk.show("uno");
  EXPECT_THAT(desk.serialCalls(),
              ElementsAre("serial close COM3", opened, "serial write COM3 \033[1;1Huno", "serial close COM3"));
}

TEST(LanciaFileDisplay, OpensTheOtherFamiliesPortOnceAndLeavesItOpen) {
  for (const std::string_view family : {"ASEM", "KUBE-D", "CD1-01", "POSLINE"}) {
    Desk desk(family);
    desk.show("uno");
    ASSERT_EQ(desk.serialCalls().size(), 2U) << family;
    EXPECT_EQ(desk.serialCalls().front(), opened) << family;
    EXPECT_TRUE(desk.bridge.form.MSComm1.PortOpen()) << family;
    desk.show("due");
    ASSERT_EQ(desk.serialCalls().size(), 1U) << family;
    EXPECT_THAT(desk.serialCalls().front(), StartsWith("serial write COM3 ")) << family;
  }
}

TEST(LanciaFileDisplay, TriesToOpenAMissingPortAgainForEveryJob) {
  Desk desk("ASEM");
  desk.computer.serialPorts.missing = {3};
  desk.show("uno");
  EXPECT_FALSE(desk.computer.files.has(jobFile));
  desk.computer.serialPorts.missing = {};
  desk.show("due");
  EXPECT_THAT(desk.serialCalls(), ElementsAre(opened, "serial write COM3 \033QAdue\r"));
}

TEST(LanciaFileDisplay, SendsAFileThatCannotBeDeletedAgain) {
  Desk desk("ASEM");
  desk.computer.files.protect(jobFile);
  desk.show("uno");
  LanciaFileDisplay(desk.bridge);
  EXPECT_THAT(desk.writes(), ElementsAre("\033QAuno\r", "\033QAuno\r"));
}

/// The journal of one job on a port that is closed, or open already, in which the call of this number fails.
fake::RunWithFailure runOf(std::string_view family, bool portIsOpen = false) {
  return [=](std::size_t failingCall) {
    Desk desk(family, 30);
    if (portIsOpen) desk.bridge.form.MSComm1.PortOpen(true);
    desk.computer.files.put(jobFile, "uno\r\ndue\r\n");
    desk.computer.journal.failCall(failingCall);
    LanciaFileDisplay(desk.bridge);
    return desk.calls();
  };
}

constexpr auto openFile = "openInput C:\\MERIDIA\\Display.txt";
constexpr auto readFile = "read C:\\MERIDIA\\Display.txt";

TEST(LanciaFileDisplay, GoesOnAfterEachFailingStepOfAWincor) {
  const Calls sentNowhere = {"serial write COM0 \033[1;1Huno", "serial write COM0 \033[2;1Hdue"};
  sweepFailingSteps(runOf("WINCOR-NIXDORF"),
                    {{.call = openFile, .dropped = 5, .instead = {opened}},
                     {.call = opened,
                      .dropped = 5,
                      .instead = {readFile, sentNowhere[0], sentNowhere[1], readFile, "serial close COM0"}},
                     {.call = readFile, .occurrence = 1, .dropped = 3}});
}

TEST(LanciaFileDisplay, GoesOnAfterAWincorsPortThatCannotBeClosed) {
  const Calls undisturbed = runOf("WINCOR-NIXDORF", true)(0);
  ASSERT_EQ(undisturbed.front(), "serial close COM3");
  EXPECT_EQ(runOf("WINCOR-NIXDORF", true)(1), undisturbed);
}

TEST(LanciaFileDisplay, GoesOnAfterEachFailingStepOfAnAsem) {
  sweepFailingSteps(
      runOf("ASEM"),
      {{.call = opened,
        .dropped = 5,
        .instead = {openFile, readFile, "serial write COM0 \033QAuno\r", "serial write COM0 \033QBdue\r", readFile}},
       {.call = openFile, .dropped = 4},
       {.call = readFile, .occurrence = 1, .dropped = 3}});
}

TEST(LanciaFileDisplay, GoesOnAfterEachFailingStepOfAKube) {
  sweepFailingSteps(runOf("KUBE-D"), {{.call = openFile, .dropped = 3, .instead = {opened}},
                                      {.call = readFile, .dropped = 2, .instead = {opened}},
                                      {.call = opened, .dropped = 1, .instead = {"serial write COM0 uno"}}});
}

}  // namespace
}  // namespace tellaxis
