// Start-up: what the program does once, and what it leaves in files and folders.
#include "core/startup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/catalogue.h"
#include "core/fake_devices.h"
#include "core/ini/ini.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

constexpr std::string_view file = "C:\\cassa\\_Tellaxis.ini";

struct Desk {
  explicit Desk(platform::BridgeOptions options = {}) : bridge(computer.host, std::move(options)) {}

  void start() { Form_Load(bridge, devices, "C:\\cassa"); }
  void store(std::string_view key, std::string_view value) { computer.profiles.put(file, "Varie", key, value); }
  std::string stored(std::string_view key) { return computer.profiles.value(file, "Varie", key).value_or("(absent)"); }

  fake::Computer computer;
  Bridge bridge;
  fake::Devices devices{computer.journal};
};

class StartUp : public testing::Test, protected Desk {};

TEST_F(StartUp, InAnEmptyFolderMakesTheJobFoldersAndTheSettings) {
  start();
  for (const char* folder : {"C:\\cassa\\CortOrbis", "C:\\cassa\\CortIN", "C:\\cassa\\Orbis", "C:\\cassa\\IN"})
    EXPECT_TRUE(computer.files.hasFolder(folder)) << folder;
  for (const char* key : {"MF_Vuoto", "RF_Vuoto", "Cort_Vuoto"}) EXPECT_EQ(stored(key), "-1") << key;
  EXPECT_EQ(stored("Orbis_Directory"), "C:\\Meridia");
  EXPECT_EQ(stored("RunTimeOrbis51"), "C:\\Programmi\\Access 97 Runtime\\msaccess.exe");
}

TEST_F(StartUp, DeletesJobsLeftFromAnEarlierRun) {
  computer.files.addFolder("C:\\cassa\\Orbis");
  computer.files.put("C:\\cassa\\Orbis\\scontrino.txt", "x");
  start();
  EXPECT_FALSE(computer.files.has("C:\\cassa\\Orbis\\scontrino.txt"));
  EXPECT_THAT(computer.journal.callsThatBegin("MF_Invia"), testing::IsEmpty());
}

TEST(KeepWaiting, JobsThatWaitedSurviveAStartAndThoseUnderWayDoNot) {
  Desk desk(platform::BridgeOptions{.keepWaiting = true});
  for (const char* folder : {"CortOrbis", "CortIN", "Orbis", "IN"}) {
    desk.computer.files.addFolder("C:\\cassa\\" + std::string(folder));
    desk.computer.files.put("C:\\cassa\\" + std::string(folder) + "\\scontrino.txt", "x");
  }
  desk.start();
  for (const char* folder : {"CortOrbis", "Orbis"})
    EXPECT_TRUE(desk.computer.files.has("C:\\cassa\\" + std::string(folder) + "\\scontrino.txt")) << folder;
  for (const char* folder : {"CortIN", "IN"})
    EXPECT_FALSE(desk.computer.files.has("C:\\cassa\\" + std::string(folder) + "\\scontrino.txt")) << folder;
}

TEST_F(StartUp, DropsTheBackslashAtTheEndOfThePointOfSaleFolder) {
  store("Orbis_Directory", "D:\\POS\\");
  start();
  EXPECT_EQ(stored("Orbis_Directory"), "D:\\POS");
  EXPECT_EQ(bridge.form.Orbis51Dir.Text, "D:\\POS");
  EXPECT_EQ(bridge.settings.pointOfSaleSettingsFile, "D:\\POS\\_Local.ini");
}

TEST_F(StartUp, KeepsAPointOfSaleFolderOfOneBackslash) {
  store("Orbis_Directory", "\\");
  start();
  EXPECT_EQ(stored("Orbis_Directory"), "\\");
  EXPECT_EQ(bridge.form.Orbis51Dir.Text, "\\");
}

TEST_F(StartUp, WaitsForAPointOfSaleFolderThatDoesNotAnswerYet) {
  store("Orbis_Directory", "\\\\server\\meridia\\");
  computer.profiles.put("\\\\server\\meridia\\_Local.ini", "Varie", "RT_Access", "C:\\rt.exe");
  computer.files.makeUnreachable("\\\\server\\meridia", 4);
  start();
  EXPECT_THAT(computer.journal.callsThatBegin("sleep"), ElementsAre("sleep 100", "sleep 100", "sleep 100"));
  EXPECT_EQ(computer.journal.callsThatBegin("message").size(), 1U);
  EXPECT_TRUE(bridge.settings.takesOver());
  EXPECT_EQ(stored("RunTimeOrbis51"), "C:\\rt.exe");
}

TEST_F(StartUp, TakesNothingOverFromAFolderThatDoesNotAnswer) {
  store("Orbis_Directory", "\\\\server\\meridia");
  store("RunTimeOrbis51", "C:\\rt.exe");
  computer.files.makeUnreachable("\\\\server\\meridia", 1000);
  start();
  EXPECT_EQ(computer.journal.callsThatBegin("sleep").size(), 60U);
  EXPECT_EQ(computer.journal.callsThatBegin("message").size(), 2U);
  EXPECT_TRUE(bridge.settings.Orbis_Setting);
  EXPECT_FALSE(bridge.settings.takesOver());
  EXPECT_EQ(stored("RunTimeOrbis51"), "C:\\rt.exe");
}

TEST_F(StartUp, AStopEndsTheWaitForThePointOfSaleFolder) {
  store("Orbis_Directory", "\\\\server\\meridia");
  computer.files.makeUnreachable("\\\\server\\meridia", 1000);
  bridge.stopRequested = [] { return true; };
  start();
  EXPECT_THAT(computer.journal.callsThatBegin("sleep"), testing::IsEmpty());
}

TEST_F(StartUp, DoesNotWaitForAPointOfSaleFolderThatIsNotThere) {
  store("Orbis_Directory", "D:\\manca");
  start();
  EXPECT_THAT(computer.journal.callsThatBegin("sleep"), testing::IsEmpty());
  EXPECT_TRUE(bridge.settings.takesOver());
}

TEST_F(StartUp, TakesTheRuntimeFromThePointOfSaleSettings) {
  computer.profiles.put("C:\\Meridia\\_Local.ini", "Varie", "RT_Access", "E:\\Access\\msaccess.exe");
  start();
  EXPECT_EQ(stored("RunTimeOrbis51"), "E:\\Access\\msaccess.exe");
}

TEST_F(StartUp, OpensGatesThatWereClosed) {
  store("MF_Vuoto", "0");
  start();
  EXPECT_EQ(stored("MF_Vuoto"), "-1");
}

TEST_F(StartUp, OffersClientAndServer) {
  start();
  EXPECT_THAT(bridge.form.Postazione.List, ElementsAre("CLIENT", "SERVER"));
}

TEST_F(StartUp, TheRoleIsChosenWhereTheDevicesFileGivesIt) {
  start();
  EXPECT_EQ(bridge.form.Postazione.Text, "");
  Bridge server(computer.host, {.role = "SERVER"});
  Form_Load(server, devices, "C:\\cassa");
  EXPECT_EQ(server.form.Postazione.Text, "SERVER");
}

TEST_F(StartUp, KnowsTheTakeOverFlagBeforeTheDevicesAreSetUp) {
  store("Orbis_Setting", "-1");
  bool known = false;
  devices.onJob = [&](std::string_view operation) {
    if (operation == "Display_StartUP_Orbis") known = bridge.settings.Orbis_Setting;
  };
  start();
  EXPECT_TRUE(known);
}

std::vector<std::string> wholeStartUp() {
  std::vector<std::string> calls{
      "read [VARIE] Orbis_Directory of C:\\cassa\\_Tellaxis.ini",
      "isUnreachable C:\\Meridia",
      "write [VARIE] MF_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini",
      "write [VARIE] RF_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini",
      "write [VARIE] Cort_Vuoto=-1 to C:\\cassa\\_Tellaxis.ini",
      "folderExists C:\\cassa\\CortOrbis",
      "createFolder C:\\cassa\\CortOrbis",
      "folderExists C:\\cassa\\CortIN",
      "removeAll C:\\cassa\\CortIN",
      "folderExists C:\\cassa\\Orbis",
      "removeAll C:\\cassa\\Orbis",
      "folderExists C:\\cassa\\IN",
      "createFolder C:\\cassa\\IN",
      "read [Varie] Orbis_Setting of C:\\cassa\\_Tellaxis.ini",
      "read [VARIE] Orbis_Directory of C:\\cassa\\_Tellaxis.ini",
      "write [Varie] Orbis_Directory=C:\\Meridia to C:\\cassa\\_Tellaxis.ini",
      "read [VARIE] RT_Access of C:\\Meridia\\_Local.ini",
      "write [VARIE] RunTimeOrbis51=C:\\Programmi\\Access 97 Runtime\\msaccess.exe to C:\\cassa\\_Tellaxis.ini",
      "Display_StartUP_Valori",
      "Display_StartUP_Orbis",
      "MF_StartUP_Valori",
      "MF_StartUP_Orbis",
      "FTP_StartUP_Orbis",
      "WEB_StartUP_Orbis",
      "RF_StartUP_Valori",
      "Cort_StartUP_Valori",
      "Cort_StartUP_Orbis"};
  for (const Setting& row : catalogue())
    if (row.group != Group::display || row.loadedAs == "Display_Active")
      calls.push_back((row.read == ReadKind::raw ? "read [Varie] " : "read [VARIE] ") + std::string(row.loadedAs) +
                      " of C:\\cassa\\_Tellaxis.ini");
  calls.emplace_back("IconaAggiungi");
  return calls;
}

std::vector<std::string> startWithFailure(std::size_t failingCall) {
  Desk desk;
  desk.computer.files.addFolder("C:\\cassa\\CortIN");
  desk.computer.files.addFolder("C:\\cassa\\Orbis");
  desk.computer.journal.failCall(failingCall);
  desk.start();
  return desk.computer.journal.calls();
}

TEST_F(StartUp, GoesThroughItsStepsInOrder) { EXPECT_THAT(startWithFailure(0), ElementsAreArray(wholeStartUp())); }

TEST_F(StartUp, AFailingStepIsSkippedAndTheRestHappens) {
  fake::sweepFailingSteps(
      startWithFailure,
      {{.call = "folderExists C:\\cassa\\CortIN", .dropped = 1, .instead = {"createFolder C:\\cassa\\CortIN"}},
       {.call = "folderExists C:\\cassa\\Orbis", .dropped = 1, .instead = {"createFolder C:\\cassa\\Orbis"}}});
}

}  // namespace
}  // namespace tellaxis
