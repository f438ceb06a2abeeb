// Exit: the question, the display's line closed before it, and the icon taken away.
#include "core/exit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/window.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;

class ExitTest : public testing::Test {
 protected:
  fake::Computer computer;
  Bridge bridge{computer.host};
  fake::Window form{computer.journal};
  TrayIcon icon;

  void openDisplayLine() {
    ASSERT_TRUE(bridge.form.MSComm1.CommPort(3));
    ASSERT_TRUE(bridge.form.MSComm1.PortOpen(true));
    computer.journal.clear();
  }
};

TEST_F(ExitTest, YesUnloadsTheForm) {
  computer.dialogs.yesNoAnswer = platform::Answer::yes;
  Esci_Click(bridge, form);
  EXPECT_THAT(computer.journal.calls(), ElementsAre("ask Tellaxis: Chiudere il programma", "window unload"));
}

TEST_F(ExitTest, NoKeepsTheProgramRunningWithTheDisplayLineClosed) {
  openDisplayLine();
  computer.dialogs.yesNoAnswer = platform::Answer::no;
  Esci_Click(bridge, form);
  EXPECT_THAT(computer.journal.calls(), ElementsAre("serial close COM3", "ask Tellaxis: Chiudere il programma"));
  EXPECT_FALSE(bridge.form.MSComm1.PortOpen());
  EXPECT_TRUE(form.loaded);
}

TEST_F(ExitTest, DisplayLineIsClosedBeforeTheQuestion) {
  openDisplayLine();
  bool openAtTheQuestion = true;
  computer.dialogs.onShow = [&] { openAtTheQuestion = bridge.form.MSComm1.PortOpen(); };
  Esci_Click(bridge, form);
  EXPECT_FALSE(openAtTheQuestion);
}

TEST_F(ExitTest, LineOfTheCourtesyPrinterIsLeftAlone) {
  ASSERT_TRUE(bridge.form.COMPreconto.PortOpen(true));
  computer.journal.clear();
  Esci_Click(bridge, form);
  EXPECT_TRUE(bridge.form.COMPreconto.PortOpen());
}

TEST_F(ExitTest, ALineThatCannotBeClosedDoesNotStopTheQuestion) {
  openDisplayLine();
  computer.journal.failCall(1);
  Esci_Click(bridge, form);
  EXPECT_FALSE(form.loaded);
}

TEST_F(ExitTest, UnloadRemovesTheIcon) {
  IconaAggiungi(bridge, icon, form);
  Form_Unload(bridge, icon, form);
  EXPECT_EQ(computer.tray.icons, 0);
  EXPECT_EQ(icon.shown, 0);
}

TEST_F(ExitTest, UnloadAfterAFailedRemoveGoesOn) {
  IconaAggiungi(bridge, icon, form);
  computer.journal.failCall(1);
  Form_Unload(bridge, icon, form);
  EXPECT_EQ(icon.shown, 0);
}

}  // namespace
}  // namespace tellaxis
