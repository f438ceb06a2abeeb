// Setup: the lists of fiscal printers, and the take-over of every code.
#include "fiscal/setup.h"

#include "fake/take_over_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::own;
using fake::pointOfSale;
using fake::sweepFailingSteps;
using testing::ElementsAre;
using testing::IsEmpty;

struct Desk : fake::TakeOverDesk {
  Desk() { bridge.settings.Orbis_Setting = true; }

  explicit Desk(std::string_view code) : Desk() {
    posSetting("MisPre", code);
    posSetting("CommPre", "2");
    posSetting("CF_SETTAGGIO", "19200,E,7,1");
    posSetting("Delay", "80");
  }

  Calls writesOfTakeOver() {
    computer.journal.clear();
    MF_StartUP_Orbis(bridge);
    return typedWrites();
  }
};

TEST(MFStartUPValori, OffersEveryModelWithItsDriverKindButNotFPMate) {
  Desk desk;
  MF_StartUP_Valori(desk.bridge);
  EXPECT_THAT(desk.bridge.form.MF_Type.List, ElementsAre("24 - DITRON ZIP", "91 - RCH ONDA", "93 - RCH NUCLEO",
                                                         "106 - RCH GLOBE", "0 - NON PRESENTE"));
  EXPECT_THAT(desk.bridge.form.MF_Protocol.List, ElementsAre("CASIO/DITRON - 24", "ONDA DRIVER - 91",
                                                             "NUCLEO DRIVER - 93", "GLOBE DRIVER - 106", "Nessuno"));
  EXPECT_THAT(desk.computer.journal.calls(), IsEmpty());
}

TEST(MFStartUPValori, ProposesTheDriverInputFileAndUnchecksTheLog) {
  Desk desk;
  desk.bridge.form.MF_chkLog.Value = 1;
  MF_StartUP_Valori(desk.bridge);
  EXPECT_EQ(desk.bridge.form.MF_File.Text, "C:\\MERIDIA\\Casio\\CAS.txt");
  EXPECT_EQ(desk.bridge.form.MF_chkLog.Value, 0);
}

TEST(MFStartUPOrbis, TakesOverTheDitronWithItsInputFileAndLeavesTheDriver) {
  Desk desk("24");
  desk.setting("MF_Driver", "C:\\vecchio.exe");
  EXPECT_THAT(desk.writesOfTakeOver(),
              ElementsAre("MF_Active=-1", "MF_Type=24 - DITRON ZIP", "MF_Prot=CASIO/DITRON - 24", "MF_COM=2",
                          "MF_Parametri=19200,E,7,1", "MF_Ritardo=80", "MF_File=C:\\MERIDIA\\Casio\\CAS.txt"));
  EXPECT_EQ(desk.setting("MF_Driver"), "C:\\vecchio.exe");
}

TEST(MFStartUPOrbis, TakesOverEveryModelWithADriverProgram) {
  const struct {
    std::string_view code;
    std::string type, protocol, driver;
  } models[] = {
      {"91", "91 - RCH ONDA", "ONDA DRIVER - 91", "C:\\Programmi\\OndaDriver\\OndaDriver.exe"},
      {"93", "93 - RCH NUCLEO", "NUCLEO DRIVER - 93", "C:\\Programmi\\NucleoDriver\\NucleoDriver.exe"},
      {"106", "106 - RCH GLOBE", "GLOBE DRIVER - 106", "C:\\Programmi\\GlobeDriver\\GlobeDriver.exe"},
  };
  for (const auto& model : models) {
    Desk desk(model.code);
    EXPECT_THAT(desk.writesOfTakeOver(),
                ElementsAre("MF_Active=-1", "MF_Type=" + model.type, "MF_Prot=" + model.protocol, "MF_COM=2",
                            "MF_Parametri=19200,E,7,1", "MF_Ritardo=80", "MF_Driver=" + model.driver));
  }
}

TEST(MFStartUPOrbis, PrefersTheOtherSidesDriverLineToTheProposal) {
  for (const std::string_view code : {"91", "93", "106"}) {
    Desk desk(code);
    desk.posSetting("MF_FILE_DRIVER", "D:\\Driver\\Nucleo.exe /q");
    EXPECT_EQ(desk.writesOfTakeOver().back(), "MF_Driver=D:\\Driver\\Nucleo.exe /q") << code;
  }
}

TEST(MFStartUPOrbis, WritesTheNucleoValuesAndEnds) {
  Desk desk("93");
  EXPECT_EQ(desk.writesOfTakeOver().size(), 7U);
  EXPECT_EQ(desk.setting("MF_Prot"), "NUCLEO DRIVER - 93");
  EXPECT_EQ(desk.setting("MF_File"), "(none)");
}

TEST(MFStartUPOrbis, SelectsNoPrinterForACodeThatIsNotOffered) {
  for (const std::string_view code : {"29", "0", "", "25", "\" 24\"", "\"24 \"", "024", "24,0", "Nessuno"}) {
    Desk desk(code);
    for (const std::string_view key : {"MF_File", "MF_COM", "MF_Parametri", "MF_Ritardo", "MF_Driver"})
      desk.setting(key, "prima");
    EXPECT_THAT(desk.writesOfTakeOver(), ElementsAre("MF_Active=0", "MF_Type=0 - NON PRESENTE", "MF_Prot=Non Presente"))
        << code;
    for (const std::string_view key : {"MF_File", "MF_COM", "MF_Parametri", "MF_Ritardo", "MF_Driver"})
      EXPECT_EQ(desk.setting(key), "prima") << code;
  }
}

TEST(MFStartUPOrbis, SelectsNoPrinterWithoutAPointOfSaleSettingsFile) {
  Desk desk;
  EXPECT_THAT(desk.writesOfTakeOver(), ElementsAre("MF_Active=0", "MF_Type=0 - NON PRESENTE", "MF_Prot=Non Presente"));
}

TEST(MFStartUPOrbis, LeavesTheDelayThatTheOtherSideDoesNotGive) {
  for (const std::string_view code : {"24", "91", "93", "106"}) {
    Desk desk(code);
    desk.posSetting("Delay", "");
    desk.setting("MF_Ritardo", "70");
    desk.writesOfTakeOver();
    EXPECT_EQ(desk.setting("MF_Ritardo"), "70") << code;
  }
}

TEST(MFStartUPOrbis, FallsBackOnPortAndParametersOfTheForm) {
  for (const std::string_view code : {"24", "91", "93", "106"}) {
    Desk desk;
    desk.posSetting("MisPre", code);
    desk.bridge.form.MF_Com.Text = "4";
    desk.bridge.form.MF_Param.Text = "1200,N,8,1";
    desk.writesOfTakeOver();
    EXPECT_EQ(desk.setting("MF_COM"), "4") << code;
    EXPECT_EQ(desk.setting("MF_Parametri"), "1200,N,8,1") << code;
  }
}

TEST(MFStartUPOrbis, ReadsPortAndParametersTypedForTheDitronAlone) {
  Desk ditron("24");
  ditron.posSetting("CommPre", "1.000");
  ditron.writesOfTakeOver();
  EXPECT_EQ(ditron.setting("MF_COM"), "1000");
  Desk onda("91");
  onda.posSetting("CommPre", "1.000");
  onda.writesOfTakeOver();
  EXPECT_EQ(onda.setting("MF_COM"), "1.000");
}

TEST(MFStartUPOrbis, FallsBackOnTheFormForABlankPortOfTheDitronAlone) {
  for (const auto& [code, port] : {std::pair("24", "4"), std::pair("91", "9")}) {
    Desk desk(code);
    desk.setting("MF_COM", "9");
    desk.posSetting("CommPre", "");
    desk.bridge.form.MF_Com.Text = "4";
    desk.writesOfTakeOver();
    EXPECT_EQ(desk.setting("MF_COM"), port) << code;
  }
}

TEST(MFStartUPOrbis, TouchesNothingWithoutOrbisSetting) {
  Desk desk("24");
  desk.bridge.settings.Orbis_Setting = false;
  MF_StartUP_Valori(desk.bridge);
  MF_StartUP_Orbis(desk.bridge);
  EXPECT_THAT(desk.computer.journal.calls(), IsEmpty());
}

fake::RunWithFailure runOf(std::string_view code) {
  return [=](std::size_t failingCall) {
    Desk desk(code);
    desk.bridge.form.MF_Com.Text = "4";
    desk.bridge.form.MF_Param.Text = "1200,N,8,1";
    desk.computer.journal.failCall(failingCall);
    MF_StartUP_Orbis(desk.bridge);
    return desk.computer.journal.calls();
  };
}

std::string reading(std::string_view section, std::string_view key) {
  return "read [" + std::string(section) + "] " + std::string(key) + " of " + std::string(pointOfSale);
}

std::string writing(std::string_view assignment) {
  return "write [VARIE] " + std::string(assignment) + " to " + std::string(own);
}

const Calls noPrinter = {writing("MF_Active=0"), writing("MF_Type=0 - NON PRESENTE"), writing("MF_Prot=Non Presente")};

TEST(MFStartUPOrbis, GoesOnAfterEachFailingStepForTheDitron) {
  sweepFailingSteps(
      runOf("24"),
      {{.call = reading("Varie", "MisPre"), .dropped = 10, .instead = noPrinter},
       {.call = reading("VARIE", "CommPre"), .dropped = 1, .instead = {writing("MF_COM=4")}},
       {.call = reading("VARIE", "CF_SETTAGGIO"), .dropped = 1, .instead = {writing("MF_Parametri=1200,N,8,1")}},
       {.call = reading("VARIE", "Delay"), .dropped = 1}});
}

TEST(MFStartUPOrbis, GoesOnAfterEachFailingStepForADriverProgram) {
  sweepFailingSteps(
      runOf("93"),
      {{.call = reading("Varie", "MisPre"), .dropped = 11, .instead = noPrinter},
       {.call = reading("Varie", "CommPre"), .dropped = 1, .instead = {writing("MF_COM=4")}},
       {.call = reading("Varie", "CF_SETTAGGIO"), .dropped = 1, .instead = {writing("MF_Parametri=1200,N,8,1")}},
       {.call = reading("VARIE", "Delay"), .dropped = 1}});
}

TEST(MFStartUPOrbis, GoesOnAfterEachFailingStepWithoutAPrinter) { sweepFailingSteps(runOf("29")); }

}  // namespace
}  // namespace tellaxis
