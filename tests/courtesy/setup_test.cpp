// Setup: the list, the take-over of every code, and the port of a chosen printer.
#include "courtesy/setup.h"

#include "fake/take_over_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::own;
using fake::sweepFailingSteps;
using testing::ElementsAre;
using testing::IsEmpty;

struct Desk : fake::TakeOverDesk {
  Desk() = default;
  explicit Desk(std::string_view code) : Desk() {
    posSetting("BANCO_DS_STAMPANTE", code);
    posSetting("BANCO_DS_STAMPANTE_C", "2");
    posSetting("BANCO_DS_STAMPANTE_P", "19200,E,7,1");
  }

  Calls calls(std::size_t failingCall = 0) {
    computer.journal.failCall(failingCall);
    Cort_StartUP_Orbis(bridge);
    return computer.journal.calls();
  }

  /// The assignments of one take-over, all of them to section "VARIE" of our own settings file.
  Calls writes() {
    calls();
    return typedWrites();
  }
};

TEST(CortStartUPValori, ListsTheFivePrinterTypes) {
  Desk desk;
  Cort_StartUP_Valori(desk.bridge);
  EXPECT_THAT(desk.bridge.form.Cort_Printer.List,
              ElementsAre("OLIVETTI PRT100 NonFiscale", "SAMSUNG", "DPT-282", "NON PRESENTE", "UNIPOS MERIDIA"));
  EXPECT_THAT(desk.computer.journal.calls(), IsEmpty());
}

TEST(CortStartUPOrbis, TakesOverTheOlivetti) {
  Desk desk("28");
  desk.setting("CORT_Logo", "-1");
  desk.setting("CORT_File", "c:\\logo.bmp");
  EXPECT_THAT(desk.writes(), ElementsAre("CORT_Printer=OLIVETTI PRT100 NonFiscale", "CORT_COM=2", "CORT_Logo=0"));
  EXPECT_EQ(desk.computer.profiles.value(own, "VARIE", "CORT_File"), "c:\\logo.bmp") << "empty text is not written";
}

TEST(CortStartUPOrbis, KeepsTheLogoOfTheSamsungWhereThereIsOne) {
  Desk desk("66");
  desk.setting("CORT_File", "c:\\logo.bmp");
  desk.setting("CORT_Logo", "-1");
  EXPECT_THAT(desk.writes(),
              ElementsAre("CORT_Printer=SAMSUNG", "CORT_File=c:\\logo.bmp", "CORT_COM=2", "CORT_Logo=-1"));
}

TEST(CortStartUPOrbis, ProposesTheUsualLogoToTheSamsungSwitchedOff) {
  EXPECT_THAT(Desk("66").writes(),
              ElementsAre("CORT_Printer=SAMSUNG", "CORT_File=c:\\Meridia\\LogoCassa.bmp", "CORT_COM=2", "CORT_Logo=0"));
}

TEST(CortStartUPOrbis, TakesOverPortAndLineOfASerialPrinterAndLeavesItsType) {
  for (const std::string_view code : {"108", "111"}) {
    Desk desk(code);
    desk.setting("CORT_Printer", "DPT-282");
    EXPECT_THAT(desk.writes(), ElementsAre("CORT_COM=2", "CORT_Sett=19200,E,7,1", "CORT_Logo=0")) << code;
    EXPECT_EQ(desk.computer.profiles.value(own, "VARIE", "CORT_Printer"), "DPT-282");
  }
}

TEST(CortStartUPOrbis, ProposesTheUsualLineToASerialPrinterWithoutOne) {
  Desk desk("108");
  desk.posSetting("BANCO_DS_STAMPANTE_P", "");
  EXPECT_THAT(desk.writes(), ElementsAre("CORT_COM=2", "CORT_Sett=9600,N,8,1", "CORT_Logo=0"));
}

TEST(CortStartUPOrbis, LeavesPortAndLineWhereNoPortIsNamed) {
  for (const std::string_view code : {"28", "66", "108", "111"}) {
    Desk desk(code);
    desk.posSetting("BANCO_DS_STAMPANTE_C", " ");
    for (const std::string& assignment : desk.writes()) {
      EXPECT_FALSE(assignment.starts_with("CORT_COM=")) << code;
      EXPECT_FALSE(assignment.starts_with("CORT_Sett=")) << code;
    }
  }
}

TEST(CortStartUPOrbis, SelectsNoPrinterForEveryOtherCodeAndLeavesPortAndLogoFile) {
  for (const std::string_view code : {"1", "29", "65", "109", "-1", "0", "32767", "28,4", "27,6"}) {
    Desk desk(code);
    desk.setting("CORT_COM", "3");
    const bool olivetti = code.starts_with("28,") || code.starts_with("27,");
    if (olivetti)
      EXPECT_EQ(desk.writes().front(), "CORT_Printer=OLIVETTI PRT100 NonFiscale") << "codes are rounded: " << code;
    else
      EXPECT_THAT(desk.writes(), ElementsAre("CORT_Printer=NON PRESENTE", "CORT_Logo=0")) << code;
    EXPECT_EQ(desk.computer.profiles.value(own, "VARIE", "CORT_COM"), olivetti ? "2" : "3") << code;
  }
}

TEST(CortStartUPOrbis, TakesACodeWithBlanksAroundOrZerosBefore) {
  for (const std::string_view code : {" 28", "28 ", "028"})
    EXPECT_EQ(Desk(code).writes().front(), "CORT_Printer=OLIVETTI PRT100 NonFiscale") << code;
}

TEST(CortStartUPOrbis, ChangesNothingWithoutAModel) {
  EXPECT_THAT(Desk().writes(), IsEmpty());
  EXPECT_THAT(Desk("").writes(), IsEmpty());
  EXPECT_THAT(Desk("  ").writes(), IsEmpty());
}

TEST(CortStartUPOrbis, EndsSilentlyAtACodeThatIsNo16BitNumber) {
  for (const std::string_view code : {"SRP", "99999", "28a"}) {
    Desk desk(code);
    EXPECT_THAT(desk.writes(), IsEmpty()) << code;
    EXPECT_EQ(desk.computer.trace.failures.size(), 1U);
  }
}

TEST(CortStartUPOrbis, IsNotHeldByTheTakeOverSetting) {
  Desk desk("28");
  desk.bridge.settings.Orbis_Setting = false;
  EXPECT_EQ(desk.writes().size(), 3U);
}

TEST(CortStartUPOrbis, GoesOnAfterEveryFailingStep) {
  const auto run = [](std::string_view code) {
    return [code](std::size_t failingCall) {
      Desk desk(code);
      return desk.calls(failingCall);
    };
  };
  const std::string readModel = "read [VARIE] BANCO_DS_STAMPANTE of C:\\MERIDIA\\_Local.ini";
  const std::string readPort = "read [VARIE] BANCO_DS_STAMPANTE_C of C:\\MERIDIA\\_Local.ini";
  const std::string readLine = "read [VARIE] BANCO_DS_STAMPANTE_P of C:\\MERIDIA\\_Local.ini";
  const std::string usualLine = "write [VARIE] CORT_Sett=9600,N,8,1 to C:\\Tellaxis\\_Tellaxis.ini";
  // A key that cannot be read reads as absent.
  sweepFailingSteps(run("28"), {{.call = readModel, .dropped = 4}, {.call = readPort, .dropped = 1}});
  sweepFailingSteps(run("66"), {{.call = readModel, .dropped = 7}, {.call = readPort, .dropped = 1}});
  sweepFailingSteps(run("108"), {{.call = readModel, .dropped = 6},
                                 {.call = readPort, .dropped = 3},
                                 {.call = readLine, .dropped = 1, .instead = {usualLine}}});
  sweepFailingSteps(run("5"), {{.call = readModel, .dropped = 2}});
}

TEST(CortPrinterChange, ShowsThePortOfAnInstalledPrinter) {
  Desk desk;
  desk.computer.Printer.installed = {{"A", "COM1:"}, {"B", "COM2:"}, {"B", "COM3:"}};
  desk.bridge.form.Cort_Printer.Text = "B";
  Cort_Printer_Change(desk.bridge);
  EXPECT_EQ(desk.bridge.form.Cort_COM.Text, "COM2:");
}

TEST(CortPrinterChange, LeavesThePortForATypeThatIsNoInstalledPrinter) {
  Desk desk;
  desk.computer.Printer.installed = {{"SAMSUNG SRP-350", "COM1:"}};
  desk.bridge.form.Cort_COM.Text = "4";
  for (const std::string_view text : {"SAMSUNG", "samsung srp-350", ""}) {
    desk.bridge.form.Cort_Printer.Text = text;
    Cort_Printer_Change(desk.bridge);
    EXPECT_EQ(desk.bridge.form.Cort_COM.Text, "4") << text;
  }
}

TEST(CortPrinterChange, EndsQuietlyWhereThePrintersCannotBeListed) {
  Desk desk;
  desk.computer.Printer.installed = {{"A", "COM1:"}};
  desk.bridge.form.Cort_Printer.Text = "A";
  desk.computer.journal.failCall(1);
  Cort_Printer_Change(desk.bridge);
  EXPECT_EQ(desk.bridge.form.Cort_COM.Text, "");
}

}  // namespace
}  // namespace tellaxis
