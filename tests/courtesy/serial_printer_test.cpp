// Serial printer: line filter, bytes sent, and the test print.
#include "courtesy/serial_printer.h"

#include "courtesy_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepFailingSteps;
using testing::ElementsAre;

const std::string open = "serial open COM3 9600,N,8,1 buffers 1024 2048";
const std::string write = "serial write COM3 ";
const std::string feed = write + " \r\n";
const std::string cut = write + "\x1Bm";
const std::string close = "serial close COM3";

Calls sentOf(std::string_view job) {
  CourtesyDesk desk("", job);
  desk.print(Cort_StampaDPT282);
  Calls sent;
  for (const std::string& call : desk.computer.journal.callsThatBegin(write)) sent.push_back(call.substr(write.size()));
  sent.resize(sent.size() - 6);
  return sent;
}

TEST(CortStampaDPT282, SendsMarkedLinesFeedsAndCuts) {
  CourtesyDesk desk("", "N2xx:Totale 10,00\r\nN1xx:no\r\nN2:a:b \x80\xE8\r\n");
  EXPECT_THAT(desk.print(Cort_StampaDPT282),
              ElementsAre(open, openJob, readJob, write + "Totale 10,00\r\n", write + "b \x80\xE8\r\n", readJob,  //
                          feed, feed, feed, feed, feed, cut, close, removeJob));
  EXPECT_FALSE(desk.hasJob());
}

TEST(CortStampaDPT282, SetsTheFourFurtherProperties) {
  CourtesyDesk desk("", "");
  desk.bridge.form.COMPreconto.RThreshold(7);
  desk.bridge.form.COMPreconto.SThreshold(7);
  desk.print(Cort_StampaDPT282);
  EXPECT_EQ(desk.bridge.form.COMPreconto.buffers(), (platform::LineBuffers{1024, 2048, 0, 0}));
}

TEST(CortStampaDPT282, SendsNothingOfALineWithoutTheMark) {
  EXPECT_TRUE(sentOf("Totale\r\nN1:x\r\nn2xx:x\r\n N2xx:x\r\n\r\nN\r\n").empty());
}

TEST(CortStampaDPT282, SearchesTheColonFromTheFourthCharacter) {
  EXPECT_THAT(sentOf("N2x:uno\r\nN2xxxxx:due:tre\r\nN2:uno:due\r\nN2x:\r\n"),
              ElementsAre("uno\r\n", "due:tre\r\n", "due\r\n", "\r\n"));
}

TEST(CortStampaDPT282, SendsALineWithoutColonWhole) {
  EXPECT_THAT(sentOf("N2 totale\r\nN2:uno\r\nN2\r\n"), ElementsAre("N2 totale\r\n", "N2:uno\r\n", "N2\r\n"));
}

TEST(CortStampaDPT282, UsesALineThatIsOpenAlreadyAndClosesIt) {
  CourtesyDesk desk("", "N2xx:x\r\n");
  desk.bridge.form.COMPreconto.CommPort(3);
  desk.bridge.form.COMPreconto.PortOpen(true);
  EXPECT_THAT(desk.print(Cort_StampaDPT282),
              ElementsAre("serial configure COM3 9600,N,8,1", openJob, readJob, write + "x\r\n", readJob,  //
                          feed, feed, feed, feed, feed, cut, close, removeJob));
}

TEST(CortStampaDPT282, KeepsPortAndSettingsThatCannotBeConverted) {
  for (const Value& port : {Value(std::string("LPT1")), Value(std::string("99999")), Value(std::string())}) {
    CourtesyDesk desk("", "");
    desk.bridge.form.COMPreconto.CommPort(3);
    desk.bridge.settings.Cort_Com = port;
    desk.bridge.settings.Cort_Sett = "veloce";
    EXPECT_EQ(desk.print(Cort_StampaDPT282).front(), open);
    EXPECT_EQ(desk.computer.trace.failures.size(), 2U);
  }
}

TEST(CortStampaDPT282, DeletesTheJobEvenWhereTheLineIsMissing) {
  CourtesyDesk desk("", "N2xx:x");
  desk.computer.serialPorts.missing = {3};
  desk.print(Cort_StampaDPT282);
  EXPECT_FALSE(desk.hasJob());
}

TEST(CortStampaDPT282, GoesOnAfterEveryFailingStep) {
  const auto run = [](std::size_t failingCall) {
    CourtesyDesk desk("", "N2xx:uno\r\nN2xx:due\r\n");
    return desk.print(Cort_StampaDPT282, failingCall);
  };
  // A line that was not opened has no number of its own, and every write on it fails.
  const std::string closedWrite = "serial write COM0 ";
  const std::string closedFeed = closedWrite + " \r\n";
  const Calls onAClosedLine = {openJob,
                               readJob,
                               closedWrite + "uno\r\n",
                               closedWrite + "due\r\n",
                               readJob,
                               closedFeed,
                               closedFeed,
                               closedFeed,
                               closedFeed,
                               closedFeed,
                               closedWrite + "\x1Bm",
                               "serial close COM0",
                               removeJob};
  sweepFailingSteps(run, {{.call = open, .dropped = onAClosedLine.size(), .instead = onAClosedLine},
                          {.call = openJob, .dropped = 4},
                          {.call = readJob, .occurrence = 1, .dropped = 3}});
}

TEST(Command1, SendsTheTestTextFeedsAndCuts) {
  CourtesyDesk desk("");
  Command1_Click(desk.bridge);
  EXPECT_THAT(desk.computer.journal.calls(),
              ElementsAre(open, write + "ambaraBA CICI COCO TRE CIVETTE", feed, feed, feed, feed, feed, cut, close));
}

TEST(Command1, SendsThirtyCharacters) {
  CourtesyDesk desk("");
  Command1_Click(desk.bridge);
  EXPECT_EQ(desk.computer.journal.callsThatBegin(write).front().size() - write.size(), 30U);
}

TEST(Command1, GoesOnAfterEveryFailingStep) {
  const auto run = [](std::size_t failingCall) {
    CourtesyDesk desk("");
    desk.computer.journal.failCall(failingCall);
    Command1_Click(desk.bridge);
    return desk.computer.journal.calls();
  };
  const std::string closedWrite = "serial write COM0 ";
  const std::string closedFeed = closedWrite + " \r\n";
  sweepFailingSteps(
      run, {{.call = open,
             .dropped = 8,
             .instead = {closedWrite + "ambaraBA CICI COCO TRE CIVETTE", closedFeed, closedFeed, closedFeed, closedFeed,
                         closedFeed, closedWrite + "\x1Bm", "serial close COM0"}}});
}

}  // namespace
}  // namespace tellaxis
