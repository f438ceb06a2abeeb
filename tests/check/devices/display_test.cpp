// Display: its family, its file and its line.
#include "check/check_desk.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct DisplayCheck : CheckDesk {
  std::vector<std::string> problems() { return CheckDesk::problems(Checked::display); }
  void expectError(std::string_view code, std::string_view text) {
    expectFinding(code, Checked::display, Level::error, text);
  }
  void portIs(platform::PortAccess access, std::string heldBy = {}) {
    inspection.ports[3] = {.access = access, .device = "/dev/ttyUSB0", .heldBy = std::move(heldBy)};
  }
};

TEST_F(DisplayCheck, AFamilyThatIsUnknown) {
  setting("Display_Type", "FUTURA");
  EXPECT_THAT(problems(), ElementsAre("family-unknown"));
  expectError("family-unknown", "FUTURA");
}

TEST_F(DisplayCheck, AFileWhoseFolderIsMissingOrThatIsNotSet) {
  setting("Display_File", "D:\\altrove\\display.txt");
  EXPECT_THAT(problems(), ElementsAre("display-file-folder-missing"));
  expectError("display-file-folder-missing", "D:\\altrove");
  setting("Display_File", "");
  expectError("display-file-folder-missing", "non \xE8 impostato");
}

TEST_F(DisplayCheck, AFileThatNobodyTakes) {
  computer.files.put("C:\\DLY\\display.txt", "");
  EXPECT_THAT(problems(), IsEmpty());
  inspection.ages = {{"c:\\dly\\display.txt", std::chrono::hours(3)}};
  EXPECT_THAT(problems(), ElementsAre("jobs-waiting"));
  expectFinding("jobs-waiting", Checked::display, Level::warning, "aspetta da 3 ore");
}

TEST_F(DisplayCheck, APortThatIsMissingOrNoNumber) {
  setting("Display_COM", "9");
  EXPECT_THAT(problems(), ElementsAre("port-missing"));
  expectError("port-missing", "COM9");
  setting("Display_COM", "nove");
  EXPECT_THAT(problems(), ElementsAre("port-missing"));
  expectError("port-missing", "\"nove\"");
}

TEST_F(DisplayCheck, APortThatAnotherProgramHas) {
  portIs(platform::PortAccess::held, "minicom (99)");
  EXPECT_THAT(problems(), ElementsAre("port-busy"));
  expectError("port-busy", "COM3 (/dev/ttyUSB0) \xE8 tenuta aperta da minicom (99)");
  portIs(platform::PortAccess::held);
  expectError("port-busy", "da un altro programma");
}

TEST_F(DisplayCheck, ThePortThatTheBridgeItselfHasIsInOrder) {
  portIs(platform::PortAccess::held, "tellaxisd (4711)");
  EXPECT_THAT(problems(), IsEmpty());
  serving.reset();
  EXPECT_THAT(problems(), ElementsAre("port-busy")) << "that copy serves another folder";
}

TEST_F(DisplayCheck, APortMayBeTriedOnlyWhileNoBridgeRuns) {
  findings();
  EXPECT_FALSE(inspection.askedToOpen);
  serving.reset();
  findings();
  EXPECT_TRUE(inspection.askedToOpen);
}

TEST_F(DisplayCheck, APortThatThisUserMayNotOpen) {
  portIs(platform::PortAccess::refused);
  EXPECT_THAT(problems(), ElementsAre("port-refused"));
  expectError("port-refused", "COM3");
}

TEST_F(DisplayCheck, LineSettingsThatAreNone) {
  setting("Display_Parametri", "9600,Z,8,1");
  EXPECT_THAT(problems(), ElementsAre("port-settings"));
  expectError("port-settings", "9600,Z,8,1");
}

TEST_F(DisplayCheck, APauseThatMaySpanMidnight) {
  options.midnight = false;
  EXPECT_THAT(problems(), ElementsAre("midnight-hang"));
  setting("Display_Delay", "0");
  EXPECT_THAT(problems(), IsEmpty());
}

}  // namespace
}  // namespace tellaxis
