// Trial: the sample job of each device, and what becomes of it.
#include "trial/trial.h"

#include "check/check_desk.h"
#include "trial/sample_jobs.h"

namespace tellaxis {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr const char* courtesyPlace = "C:\\cassa\\CortOrbis\\prova_tellaxis.txt";

struct DeviceTrial : CheckDesk {
  Bridge bridge{computer.host};

  TrialEnd attempt(Device device, bool running = true) {
    setMainFolder(bridge.settings, "C:\\cassa");
    CaricaImpostazioni(bridge);
    return tryDevice(bridge, device, running);
  }
  std::string sample(Device device) {
    setMainFolder(bridge.settings, "C:\\cassa");
    CaricaImpostazioni(bridge);
    return sampleJob(bridge, device);
  }
  /// The bridge takes this file after 400 ms.
  void bridgeTakes(const std::string& file) {
    computer.clock.after(std::chrono::milliseconds(400), [this, file] {
      taken = computer.files.text(file);
      computer.files.erase(file);
    });
  }

  std::string taken;
};

TEST_F(DeviceTrial, TheJobGoesTheWayOfEveryJobAndIsWaitedFor) {
  const std::pair<Device, const char*> places[] = {{Device::display, "C:\\DLY\\display.txt"},
                                                   {Device::slipPrinter, "C:\\RF\\ricevuta.txt"},
                                                   {Device::courtesyPrinter, courtesyPlace}};
  for (const auto& [device, place] : places) {
    bridgeTakes(place);
    EXPECT_EQ(attempt(device), TrialEnd::taken) << place;
    EXPECT_THAT(taken, AllOf(HasSubstr("Prova"), HasSubstr("\xE8"), HasSubstr("\x80"))) << place;
    EXPECT_LT(computer.clock.elapsed(), std::chrono::seconds(2));
  }
}

TEST_F(DeviceTrial, AJobUnderWayIsWaitedForToo) {
  computer.clock.after(std::chrono::milliseconds(100),
                       [this] { computer.files.move(courtesyPlace, "C:\\cassa\\CortIN\\prova_tellaxis.txt"); });
  EXPECT_EQ(attempt(Device::courtesyPrinter), TrialEnd::notFinished);
}

TEST_F(DeviceTrial, AJobThatNobodyTakesIsRemoved) {
  EXPECT_EQ(attempt(Device::slipPrinter), TrialEnd::notTaken);
  EXPECT_FALSE(computer.files.has("C:\\RF\\ricevuta.txt"));
  EXPECT_GE(computer.clock.elapsed(), std::chrono::seconds(20));
}

TEST_F(DeviceTrial, NothingIsWrittenWhereItCouldNotWork) {
  EXPECT_EQ(attempt(Device::fiscalPrinter), TrialEnd::notTried);
  EXPECT_EQ(attempt(Device::display, false), TrialEnd::notRunning);
  computer.files.put("C:\\DLY\\display.txt", "Totale");
  EXPECT_EQ(attempt(Device::display), TrialEnd::placeTaken);
  EXPECT_EQ(computer.files.text("C:\\DLY\\display.txt"), "Totale");
  setting("Display_Type", "FUTURA");
  EXPECT_EQ(attempt(Device::display), TrialEnd::noSample);
  setting("RF_Active", "0");
  EXPECT_EQ(attempt(Device::slipPrinter), TrialEnd::deviceOff);
  EXPECT_TRUE(computer.journal.callsThatBegin("create ").empty());
}

TEST_F(DeviceTrial, AnEndHasItsSentence) {
  for (int end = 0; end <= static_cast<int>(TrialEnd::notFinished); ++end)
    EXPECT_NE(textOf(static_cast<TrialEnd>(end)), "");
}

TEST_F(DeviceTrial, ADisplayThatShowsOneLineGetsBothInOne) {
  setting("Display_Type", "KUBE-D");
  EXPECT_EQ(sample(Device::display), "Prova: \xE8 \xE0 \xF2 \xF9 \xEC \x80  Totale       12,50 \x80\r\n");
}

TEST_F(DeviceTrial, EveryCourtesyTypeHasASampleInItsOwnForm) {
  EXPECT_THAT(sample(Device::courtesyPrinter), HasSubstr("Rosso#0#9#0#0#R\r\n"));
  computer.Printer.installed = {{"SAMSUNG SRP-350", "COM4:"}};
  EXPECT_THAT(sample(Device::courtesyPrinter), HasSubstr("8001234567897#0#14#13\r\n"));
  const std::pair<const char*, const char*> others[] = {{"OLIVETTI PRT100 NonFiscale",
                                                         "\xA7"
                                                         "DProva"},
                                                        {"UNIPOS MERIDIA", "N:SCO:TXT:Prova"},
                                                        {"DPT-282", "N2 :Prova"}};
  for (const auto& [type, beginning] : others) {
    setting("CORT_Printer", type);
    EXPECT_TRUE(sample(Device::courtesyPrinter).starts_with(beginning)) << type;
  }
}

}  // namespace
}  // namespace tellaxis
