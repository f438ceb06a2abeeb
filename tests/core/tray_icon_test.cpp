// Tray icon: the record handed to the desktop, hiding and coming back.
#include "core/tray_icon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/window.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double twipsPerPixel = 15;

class TrayIconTest : public testing::Test {
 protected:
  fake::Computer computer;
  Bridge bridge{computer.host};
  fake::Window form{computer.journal};
  TrayIcon icon;

  const platform::TrayRecord& lastRecord() const { return computer.tray.records.back(); }
};

TEST_F(TrayIconTest, AddHandsOverTheRecordFieldByField) {
  IconaAggiungi(bridge, icon, form);
  EXPECT_THAT(computer.journal.calls(), ElementsAre("tray add"));
  EXPECT_EQ(lastRecord().size, 88U);
  EXPECT_EQ(lastRecord().window, 4711U);
  EXPECT_EQ(lastRecord().identifier, 1U);
  EXPECT_EQ(lastRecord().flags, 7U);
  EXPECT_EQ(lastRecord().callbackMessage, 512U);
  EXPECT_EQ(lastRecord().icon, 815U);
  EXPECT_EQ(lastRecord().tip, "Tellaxis");
  EXPECT_EQ(icon.shown, -1);
}

TEST_F(TrayIconTest, RemoveHandsOverTheSameIconWithoutTip) {
  IconaAggiungi(bridge, icon, form);
  computer.journal.clear();
  IconaRimuovi(bridge, icon, form);
  EXPECT_THAT(computer.journal.calls(), ElementsAre("tray remove"));
  EXPECT_EQ(lastRecord().size, 88U);
  EXPECT_EQ(lastRecord().window, 4711U);
  EXPECT_EQ(lastRecord().identifier, 1U);
  EXPECT_EQ(lastRecord().flags, 7U);
  EXPECT_EQ(lastRecord().callbackMessage, 1U);
  EXPECT_EQ(lastRecord().icon, 815U);
  EXPECT_EQ(lastRecord().tip, "");
  EXPECT_EQ(icon.shown, 0);
}

TEST_F(TrayIconTest, TipLeavesRoomForTheEndingNulInSixtyFourCharacters) {
  form.caption = std::string(63, 'a') + "b";
  IconaAggiungi(bridge, icon, form);
  EXPECT_EQ(lastRecord().tip, std::string(63, 'a'));
}

TEST_F(TrayIconTest, FlagFollowsTheCallsEvenWhereTheDesktopRefusesThem) {
  computer.journal.failCall(1);
  IconaAggiungi(bridge, icon, form);
  EXPECT_EQ(computer.tray.icons, 0);
  EXPECT_EQ(icon.shown, -1);
  computer.journal.failCall(1);
  IconaRimuovi(bridge, icon, form);
  EXPECT_EQ(icon.shown, 0);
}

TEST_F(TrayIconTest, HidingAddsTheIconAgain) {
  IconaAggiungi(bridge, icon, form);
  computer.journal.clear();
  cmdNascondi_Click(bridge, icon, form);
  EXPECT_THAT(computer.journal.calls(), ElementsAre("window hide", "tray add"));
  EXPECT_FALSE(form.visible);
}

TEST_F(TrayIconTest, HidingTwiceLeavesExactlyOneIcon) {
  IconaAggiungi(bridge, icon, form);
  cmdNascondi_Click(bridge, icon, form);
  cmdNascondi_Click(bridge, icon, form);
  EXPECT_EQ(computer.tray.icons, 1);
  EXPECT_EQ(icon.shown, -1);
  IconaRimuovi(bridge, icon, form);
  EXPECT_EQ(computer.tray.icons, 0);
}

TEST_F(TrayIconTest, WithoutATrayHidingMakesTheFormSmall) {
  computer.tray.present = false;
  cmdNascondi_Click(bridge, icon, form);
  EXPECT_THAT(computer.journal.calls(), ElementsAre("window minimize", "tray add"));
  EXPECT_TRUE(form.visible);
}

TEST_F(TrayIconTest, LeftButtonLetGoOverTheIconShowsTheForm) {
  cmdNascondi_Click(bridge, icon, form);
  Form_MouseMove(form, 514, ScaleMode::pixels, twipsPerPixel);
  EXPECT_TRUE(form.visible);
}

TEST_F(TrayIconTest, LeftButtonLetGoWhileVisibleChangesNothingAndLeavesTheIcon) {
  IconaAggiungi(bridge, icon, form);
  Form_MouseMove(form, 514, ScaleMode::pixels, twipsPerPixel);
  EXPECT_TRUE(form.visible);
  EXPECT_EQ(computer.tray.icons, 1);
  EXPECT_EQ(icon.shown, -1);
}

TEST_F(TrayIconTest, RightClickAndEveryOtherEventDoNothing) {
  cmdNascondi_Click(bridge, icon, form);
  computer.journal.clear();
  for (const int code : {512, 513, 515, 516, 517, 518, 519, 520, 0, -514, 33282})
    Form_MouseMove(form, code, ScaleMode::pixels, twipsPerPixel);
  EXPECT_THAT(computer.journal.calls(), IsEmpty());
  EXPECT_FALSE(form.visible);
}

TEST_F(TrayIconTest, OtherScalesThanPixelsAreDividedByTheTwipsOfAPixel) {
  form.visible = false;
  Form_MouseMove(form, 514, ScaleMode::twips, twipsPerPixel);
  EXPECT_FALSE(form.visible);
  Form_MouseMove(form, 514 * twipsPerPixel, ScaleMode::twips, twipsPerPixel);
  EXPECT_TRUE(form.visible);
}

TEST_F(TrayIconTest, PixelsAreTakenAsTheyAre) {
  form.visible = false;
  Form_MouseMove(form, 514 * twipsPerPixel, ScaleMode::pixels, twipsPerPixel);
  EXPECT_FALSE(form.visible);
}

TEST_F(TrayIconTest, CoordinateIsRoundedToAWholeNumberHalfToEven) {
  for (const double x : {513.5, 513.6, 514.4, 514.5}) {
    form.visible = false;
    Form_MouseMove(form, x, ScaleMode::pixels, twipsPerPixel);
    EXPECT_TRUE(form.visible) << x;
  }
  for (const double x : {513.4, 514.6}) {
    form.visible = false;
    Form_MouseMove(form, x, ScaleMode::pixels, twipsPerPixel);
    EXPECT_FALSE(form.visible) << x;
  }
}

}  // namespace
}  // namespace tellaxis
