// Invia: every driver kind takes receipts in its own way.
#include "fiscal/job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view job = "C:\\cassa\\IN\\scontrino.txt";
constexpr std::string_view driverProtocols[] = {"ONDA DRIVER - 91", "NUCLEO DRIVER - 93", "GLOBE DRIVER - 106"};

/// A desk with one fiscal job, a delay of 50 hundredths, and the log switched on.
struct Desk {
  explicit Desk(std::string_view protocol) {
    Settings& settings = bridge.settings;
    settings.MF_Prot = protocol;
    settings.MF_File = "C:\\mf\\in.txt";
    settings.MF_File_Output = "C:\\mf\\out.txt";
    settings.MF_Driver = "C:\\mf\\driver.exe /q";
    settings.MF_Ritardo = Currency{500'000};
    settings.MF_ChkLog = true;
    setPointOfSaleFolder(settings, "C:\\MERIDIA");
    computer.files.put(job, "receipt");
  }

  fake::Calls invia() {
    MF_Invia(bridge, job);
    return computer.journal.calls();
  }
  std::vector<std::string> logLines() { return computer.journal.callsThatBegin("append c:\\Tellaxis\\MF.log"); }
  void answerAfter(std::chrono::milliseconds delay) {
    computer.clock.after(delay, [this] { computer.files.put("C:\\mf\\out.txt", "ok"); });
  }

  fake::Computer computer;
  Bridge bridge{computer.host};
};

std::string logged(std::string_view message) {
  return "append c:\\Tellaxis\\MF.log 07/03/2003 09:30 - " + std::string(message) + "\r\n";
}

TEST(InputFileHandOver, CopiesTheJobAfterOnePause) {
  Desk desk("CASIO/DITRON - 24");
  EXPECT_THAT(desk.invia(), ElementsAre("exists C:\\mf\\in.txt", logged("Invio file: C:\\cassa\\IN\\scontrino.txt"),
                                        "sleep 50", "copy C:\\cassa\\IN\\scontrino.txt -> C:\\mf\\in.txt"));
  EXPECT_EQ(desk.computer.files.text("C:\\mf\\in.txt"), "receipt");
  EXPECT_TRUE(desk.computer.files.has(job));
}

TEST(InputFileHandOver, AZipJobIsCopiedWithoutThePause) {
  Desk desk("CASIO/DITRON - 24");
  desk.computer.files.put("C:\\cassa\\IN\\DLY_ZIP.TXT", "x");
  MF_Invia(desk.bridge, "C:\\cassa\\IN\\DLY_ZIP.TXT");
  EXPECT_THAT(desk.computer.journal.callsThatBegin("sleep"), IsEmpty());
  EXPECT_EQ(desk.computer.files.text("C:\\mf\\in.txt"), "x");
}

TEST(InputFileHandOver, AZipJobInOtherCasePauses) {
  Desk desk("CASIO/DITRON - 24");
  MF_Invia(desk.bridge, "C:\\cassa\\IN\\dly_zip.txt");
  EXPECT_THAT(desk.computer.journal.callsThatBegin("sleep"), ElementsAre("sleep 50"));
}

TEST(InputFileHandOver, WaitsUntilTheDriverHasTakenTheReceiptBefore) {
  Desk desk("CASIO/DITRON - 24");
  desk.computer.files.put("C:\\mf\\in.txt", "before");
  desk.computer.clock.after(900ms, [&] { desk.computer.files.erase("C:\\mf\\in.txt"); });
  EXPECT_THAT(desk.invia(),
              ElementsAre("exists C:\\mf\\in.txt", logged("Loop in attesa di liberare C:\\mf\\in.txt"), "sleep 50",
                          "exists C:\\mf\\in.txt", logged("Loop in attesa di liberare C:\\mf\\in.txt"), "sleep 50",
                          "exists C:\\mf\\in.txt", logged("Invio file: C:\\cassa\\IN\\scontrino.txt"), "sleep 50",
                          "copy C:\\cassa\\IN\\scontrino.txt -> C:\\mf\\in.txt"));
}

TEST(InputFileHandOver, GivesUpAfterSixWaitsAndSevenTests) {
  Desk desk("CASIO/DITRON - 24");
  desk.computer.files.put("C:\\mf\\in.txt", "before");
  desk.invia();
  EXPECT_THAT(desk.computer.journal.callsThatBegin("exists"), SizeIs(7));
  EXPECT_THAT(desk.computer.journal.callsThatBegin("sleep 50"), SizeIs(6));
  EXPECT_EQ(desk.logLines().back(), logged("Invio file annullato: C:\\cassa\\IN\\scontrino.txt"));
  EXPECT_EQ(desk.computer.files.text("C:\\mf\\in.txt"), "before");
}

TEST(InputFileHandOver, WithoutDelayGivesUpAtOnce) {
  Desk desk("CASIO/DITRON - 24");
  desk.bridge.settings.MF_Ritardo = no;
  desk.computer.files.put("C:\\mf\\in.txt", "before");
  desk.invia();
  EXPECT_THAT(desk.computer.journal.callsThatBegin("exists"), SizeIs(7));
  EXPECT_EQ(desk.computer.clock.elapsed(), 0ms);
}

TEST(InputFileHandOver, IsSilentWithoutTheLog) {
  Desk desk("CASIO/DITRON - 24");
  desk.bridge.settings.MF_ChkLog = false;
  desk.invia();
  EXPECT_THAT(desk.logLines(), IsEmpty());
}

TEST(InputFileHandOver, AFailingStepIsSkippedAndTheRestHappens) {
  fake::sweepFailingSteps(
      [](std::size_t failingCall) {
        Desk desk("CASIO/DITRON - 24");
        desk.computer.files.put("C:\\mf\\in.txt", "before");
        desk.computer.clock.after(400ms, [&] { desk.computer.files.erase("C:\\mf\\in.txt"); });
        desk.computer.journal.failCall(failingCall);
        return desk.invia();
      },
      {{.call = "exists C:\\mf\\in.txt", .occurrence = 1, .dropped = 3}});
}

TEST(FpMateHandOver, MovesTheInputFileIntoTheFolder) {
  Desk desk("FPMate - 29");
  desk.computer.files.put("C:\\mf\\in.txt", "<xml/>");
  EXPECT_THAT(desk.invia(),
              ElementsAre("copy C:\\mf\\in.txt -> C:\\MERIDIA\\Epson\\Scontr.xml", "remove C:\\mf\\in.txt"));
  EXPECT_EQ(desk.computer.files.text("C:\\MERIDIA\\Epson\\Scontr.xml"), "<xml/>");
}

TEST(FpMateHandOver, WithoutAnInputFileNothingElseHappens) {
  Desk desk("FPMate - 29");
  desk.invia();
  EXPECT_FALSE(desk.computer.files.has("C:\\MERIDIA\\Epson\\Scontr.xml"));
  EXPECT_THAT(desk.logLines(), IsEmpty());
}

TEST(FpMateHandOver, AFailingStepIsSkippedAndTheRestHappens) {
  fake::sweepFailingSteps([](std::size_t failingCall) {
    Desk desk("FPMate - 29");
    desk.computer.files.put("C:\\mf\\in.txt", "<xml/>");
    desk.computer.journal.failCall(failingCall);
    return desk.invia();
  });
}

TEST(FpMateHandOver, WithBufferFeedsTheLowestSlot) {
  Desk desk("FPMate - 29");
  desk.bridge.settings.MF_Buffer = Currency{10'000};
  desk.computer.files.put("C:\\MERIDIA\\_Buffer\\#0003", "third");
  desk.computer.files.put("C:\\MERIDIA\\_Buffer\\#0007", "seventh");
  desk.invia();
  EXPECT_EQ(desk.computer.files.text("C:\\MERIDIA\\Epson\\Scontr.xml"), "third");
  EXPECT_TRUE(desk.computer.files.has("C:\\MERIDIA\\_Buffer\\#0007"));
  EXPECT_FALSE(desk.computer.files.has("C:\\MERIDIA\\_Buffer\\#0003"));
}

TEST(FpMateHandOver, WithBufferAFailingStepIsSkippedAndTheRestHappens) {
  fake::sweepFailingSteps(
      [](std::size_t failingCall) {
        Desk desk("FPMate - 29");
        desk.bridge.settings.MF_Buffer = yes;
        desk.computer.files.put("C:\\MERIDIA\\_Buffer\\#0020", "last");
        desk.computer.journal.failCall(failingCall);
        return desk.invia();
      },
      {{.call = "exists C:\\MERIDIA\\_Buffer\\#0020", .dropped = 2}});
}

TEST(ProgramHandOver, CopiesStartsAndAwaitsTheAnswer) {
  for (const std::string_view protocol : driverProtocols) {
    Desk desk(protocol);
    desk.answerAfter(700ms);
    EXPECT_THAT(desk.invia(), ElementsAre("copy C:\\cassa\\IN\\scontrino.txt -> C:\\mf\\in.txt",
                                          "start C:\\mf\\driver.exe /q style 6", "sleep 50", "exists C:\\mf\\out.txt",
                                          "sleep 50", "exists C:\\mf\\out.txt", "exists C:\\mf\\out.txt",
                                          "exists C:\\mf\\out.txt", "remove C:\\mf\\out.txt"))
        << protocol;
    EXPECT_TRUE(desk.computer.files.has("C:\\mf\\in.txt"));
    EXPECT_FALSE(desk.computer.files.has("C:\\mf\\out.txt"));
    EXPECT_THAT(desk.logLines(), IsEmpty());
  }
}

TEST(ProgramHandOver, TakesTheInputFileBackAfter102Waits) {
  for (const std::string_view protocol : driverProtocols) {
    Desk desk(protocol);
    desk.invia();
    EXPECT_GE(desk.computer.clock.elapsed(), 51'000ms);
    EXPECT_LE(desk.computer.clock.elapsed(), 51'000ms + 102 * 10ms);
    EXPECT_FALSE(desk.computer.files.has("C:\\mf\\in.txt"));
    EXPECT_THAT(desk.logLines(),
                ElementsAre(logged("File scontrino: C:\\cassa\\IN\\scontrino.txt - non ha generato file di output "
                                   "C:\\mf\\out.txt")));
  }
}

TEST(ProgramHandOver, AnAnswerInTheLastWaitCounts) {
  Desk desk("ONDA DRIVER - 91");
  desk.answerAfter(50'900ms);
  desk.invia();
  EXPECT_THAT(desk.logLines(), IsEmpty());
  EXPECT_TRUE(desk.computer.files.has("C:\\mf\\in.txt"));
}

TEST(ProgramHandOver, WithoutDelayGivesTheDriverNoTime) {
  Desk desk("ONDA DRIVER - 91");
  desk.bridge.settings.MF_Ritardo = no;
  desk.answerAfter(1ms);
  desk.invia();
  EXPECT_EQ(desk.computer.clock.elapsed(), 0ms);
  EXPECT_THAT(desk.logLines(), SizeIs(1));
}

TEST(ProgramHandOver, AFailingStepIsSkippedAndTheRestHappens) {
  const auto run = [](std::size_t failingCall) {
    Desk desk("NUCLEO DRIVER - 93");
    desk.answerAfter(400ms);
    desk.computer.journal.failCall(failingCall);
    return desk.invia();
  };
  const fake::Calls undisturbed = run(0);
  ASSERT_THAT(undisturbed, SizeIs(7));
  for (std::size_t k : {1, 2, 7}) EXPECT_EQ(run(k), undisturbed) << k;
  const fake::Calls beginning(undisturbed.begin(), undisturbed.begin() + 4);
  // The test of the loop fails: one more wait, then the answer is seen.
  fake::Calls once = beginning;
  once.insert(once.end(), {"sleep 50", "exists C:\\mf\\out.txt"});
  once.insert(once.end(), undisturbed.begin() + 4, undisturbed.end());
  EXPECT_EQ(run(4), once);
  // The test for a missing answer fails after 1 wait only, which is no time-out; the answer is then seen and taken.
  EXPECT_EQ(run(5), undisturbed);
  // The last test fails: the answer stays for the next tick to delete.
  EXPECT_EQ(run(6), fake::Calls(undisturbed.begin(), undisturbed.end() - 1));
}

TEST(ProgramHandOver, AFailingStepOfTheTimeOutIsSkipped) {
  const auto run = [](std::size_t failingCall) {
    Desk desk("GLOBE DRIVER - 106");
    desk.computer.journal.failCall(failingCall);
    return desk.invia();
  };
  fake::sweepFailingSteps(run);
}

TEST(Outcome, OfAnInputFileIsDeliveredGivenUpOrNothing) {
  Desk taken("CASIO/DITRON - 24");
  taken.invia();
  EXPECT_EQ(taken.bridge.fiscalOutcome, FiscalOutcome::delivered);
  Desk busy("CASIO/DITRON - 24");
  busy.computer.files.put("C:\\mf\\in.txt", "before");
  busy.invia();
  EXPECT_EQ(busy.bridge.fiscalOutcome, FiscalOutcome::givenUp);
  Desk lost("CASIO/DITRON - 24");
  lost.computer.files.erase(job);
  lost.invia();
  EXPECT_EQ(lost.bridge.fiscalOutcome, FiscalOutcome::notHandedOver);
}

TEST(Outcome, OfAProgramIsWhetherItAnswered) {
  Desk answered("NUCLEO DRIVER - 93");
  answered.answerAfter(400ms);
  answered.invia();
  EXPECT_EQ(answered.bridge.fiscalOutcome, FiscalOutcome::confirmed);
  Desk silent("NUCLEO DRIVER - 93");
  silent.invia();
  EXPECT_EQ(silent.bridge.fiscalOutcome, FiscalOutcome::unanswered);
}

TEST(Outcome, OfTheFpMateFolderIsDeliveredOnlyWhenAFileWentThere) {
  for (const bool buffered : {false, true}) {
    Desk desk("FPMate - 29");
    desk.bridge.settings.MF_Buffer = buffered;
    desk.invia();
    EXPECT_EQ(desk.bridge.fiscalOutcome, FiscalOutcome::notHandedOver);
    desk.computer.files.put(buffered ? "C:\\MERIDIA\\_Buffer\\#0001" : "C:\\mf\\in.txt", "x");
    desk.invia();
    EXPECT_EQ(desk.bridge.fiscalOutcome, FiscalOutcome::delivered);
  }
}

TEST(Outcome, OfAnEarlierJobIsForgottenWhereNoDriverIsSet) {
  Desk desk("CASIO/DITRON - 24");
  desk.invia();
  desk.bridge.settings.MF_Prot = "Nessuno";
  desk.invia();
  EXPECT_EQ(desk.bridge.fiscalOutcome, FiscalOutcome::notHandedOver);
}

TEST(UnknownProtocol, DoesNothing) {
  for (const char* protocol : {"", "Nessuno", "Non Presente", "onda driver - 91", "ONDA DRIVER - 91 "}) {
    Desk desk(protocol);
    EXPECT_THAT(desk.invia(), IsEmpty()) << protocol;
  }
}

}  // namespace
}  // namespace tellaxis
