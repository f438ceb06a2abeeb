// Setup: the lists of displays and ports, and the take-over of every code.
#include "display/setup.h"

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

  Calls writes() const { return typedWrites(); }
};

TEST(DisplayStartUPValori, OffersFiveTypesAndSixteenPortsInOrder) {
  Desk desk;
  Display_StartUP_Valori(desk.bridge);
  EXPECT_THAT(desk.bridge.form.DLY_Type.List,
              ElementsAre("ASEM", "WINCOR-NIXDORF", "KUBE-D", "POSLINE", "NON PRESENTE"));
  EXPECT_THAT(desk.bridge.form.DLY_com.List,
              ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13", "14", "15", "16"));
  EXPECT_THAT(desk.computer.journal.calls(), IsEmpty());
}

TEST(DisplayStartUPOrbis, TakesOverEveryKnownCode) {
  const std::pair<std::string_view, std::string> families[] = {
      {"1", "WINCOR-NIXDORF"}, {"2", "ASEM"}, {"4", "KUBE-D"}, {"999", "POSLINE"}};
  for (const auto& [code, family] : families) {
    Desk desk;
    desk.posSetting("Banco_DisplayNoNd", code);
    desk.posSetting("Dis_PortaCom", "3");
    desk.posSetting("Dis_Parametri", "9600,E,7,1");
    Display_StartUP_Orbis(desk.bridge);
    EXPECT_THAT(desk.writes(), ElementsAre("Display_Active=-1", "Display_Type=" + family, "Display_COM=3",
                                           "Display_Parametri=9600,E,7,1", "Display_Delay=5"))
        << code;
  }
}

TEST(DisplayStartUPOrbis, SwitchesTheDisplayOffForEveryOtherCode) {
  for (const std::string_view code : {"3", "0", "", "\" 1\"", "\"1 \"", "01", "1,0", "99", "CD1-01", "NON PRESENTE"}) {
    Desk desk;
    desk.setting("Display_Active", "-1");
    desk.setting("Display_COM", "7");
    desk.setting("Display_Parametri", "2400,N,8,1");
    desk.posSetting("Banco_DisplayNoNd", code);
    desk.posSetting("Dis_PortaCom", "3");
    Display_StartUP_Orbis(desk.bridge);
    EXPECT_THAT(desk.writes(), ElementsAre("Display_Active=0", "Display_Type=NON PRESENTE", "Display_Delay=5")) << code;
    EXPECT_EQ(desk.setting("Display_COM"), "7");
    EXPECT_EQ(desk.setting("Display_Parametri"), "2400,N,8,1");
  }
}

TEST(DisplayStartUPOrbis, Code3SelectsNoDisplayAlthoughAPortIsStored) {
  Desk desk;
  desk.setting("Display_Active", "-1");
  desk.setting("Display_COM", "3");
  desk.posSetting("Banco_DisplayNoNd", "3");
  Display_StartUP_Orbis(desk.bridge);
  EXPECT_EQ(desk.setting("Display_Active"), "0");
  EXPECT_EQ(desk.setting("Display_COM"), "3");
}

TEST(DisplayStartUPOrbis, SwitchesTheDisplayOffWithoutAPointOfSaleSettingsFile) {
  Desk desk;
  Display_StartUP_Orbis(desk.bridge);
  EXPECT_THAT(desk.writes(), ElementsAre("Display_Active=0", "Display_Type=NON PRESENTE", "Display_Delay=5"));
}

TEST(DisplayStartUPOrbis, LeavesPortAndParametersThatTheOtherSideHasBlank) {
  Desk desk;
  desk.setting("Display_COM", "7");
  desk.posSetting("Banco_DisplayNoNd", "2");
  desk.posSetting("Dis_PortaCom", "");
  desk.posSetting("Dis_Parametri", "  ");
  Display_StartUP_Orbis(desk.bridge);
  EXPECT_THAT(desk.writes(), ElementsAre("Display_Active=-1", "Display_Type=ASEM", "Display_Delay=5"));
}

TEST(DisplayStartUPOrbis, SetsADelayOf5OnAFreshSettingsFile) {
  Desk desk;
  Display_StartUP_Orbis(desk.bridge);
  EXPECT_EQ(desk.setting("Display_Delay"), "5");
}

TEST(DisplayStartUPOrbis, KeepsAnExistingDelay) {
  for (const std::string_view delay : {"30", "0"}) {
    Desk desk;
    desk.setting("Display_Delay", delay);
    Display_StartUP_Orbis(desk.bridge);
    EXPECT_EQ(desk.setting("Display_Delay"), delay);
  }
}

TEST(DisplayStartUPOrbis, TouchesNothingWithoutOrbisSetting) {
  Desk desk;
  desk.bridge.settings.Orbis_Setting = false;
  desk.posSetting("Banco_DisplayNoNd", "2");
  Display_StartUP_Valori(desk.bridge);
  Display_StartUP_Orbis(desk.bridge);
  EXPECT_THAT(desk.computer.journal.calls(), IsEmpty());
  EXPECT_FALSE(desk.bridge.form.DLY_Type.List.empty());
}

fake::RunWithFailure runOf(std::string_view code) {
  return [=](std::size_t failingCall) {
    Desk desk;
    desk.posSetting("Banco_DisplayNoNd", code);
    desk.posSetting("Dis_PortaCom", "3");
    desk.posSetting("Dis_Parametri", "9600,N,8,1");
    desk.computer.journal.failCall(failingCall);
    Display_StartUP_Orbis(desk.bridge);
    return desk.computer.journal.calls();
  };
}

std::string reading(std::string_view section, std::string_view key, std::string_view file) {
  return "read [" + std::string(section) + "] " + std::string(key) + " of " + std::string(file);
}

std::string writing(std::string_view assignment) {
  return "write [VARIE] " + std::string(assignment) + " to " + std::string(own);
}

TEST(DisplayStartUPOrbis, GoesOnAfterEachFailingStep) {
  sweepFailingSteps(runOf("2"), {{.call = reading("Varie", "Banco_DisplayNoNd", pointOfSale),
                                  .dropped = 6,
                                  .instead = {writing("Display_Active=0"), writing("Display_Type=NON PRESENTE")}},
                                 {.call = reading("VARIE", "Dis_PortaCom", pointOfSale), .dropped = 1},
                                 {.call = reading("VARIE", "Dis_Parametri", pointOfSale), .dropped = 1}});
  sweepFailingSteps(runOf("3"));
}

}  // namespace
}  // namespace tellaxis
