// General: the copy that runs, the settings file, the main folder, the disk, the point-of-sale folder.
#include "check/check_desk.h"
#include "check/codes.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct GeneralCheck : CheckDesk {};

TEST_F(GeneralCheck, AHealthyInstallationHasNoProblemAtAll) {
  for (const Finding& finding : findings()) EXPECT_LT(finding.level, Level::warning) << finding.text;
  EXPECT_FALSE(hasError(findings()));
}

TEST_F(GeneralCheck, NothingIsWrittenCreatedMovedDeletedStartedOrOpened) {
  network = true;
  setting("FTP_Indirizzo", "ftp.example");
  findings();
  constexpr std::string_view looks[] = {"read [", "list ",    "Printers",   "DeviceName", "LoadPicture ",
                                        "state ", "hasFont ", "ftp create", "ftp logIn",  "ftp release"};
  for (const std::string& call : computer.journal.calls())
    EXPECT_TRUE(std::ranges::any_of(looks, [&](std::string_view look) { return call.starts_with(look); })) << call;
  EXPECT_FALSE(inspection.askedToOpen) << "a bridge runs";
}

TEST_F(GeneralCheck, ADeviceThatIsOffSaysSoAndIsNotLookedInto) {
  for (const char* const key : {"MF_Active", "Display_Active", "RF_Active", "CORT_Active"}) setting(key, "0");
  setting("MF_Driver", "C:\\nessuno.exe");
  int off = 0;
  for (const Finding& finding : findings()) off += finding.level == Level::off ? 1 : 0;
  EXPECT_EQ(off, 7);
  EXPECT_FALSE(hasError(findings()));
}

TEST_F(GeneralCheck, TheRunningBridgeIsNamedByItsNumber) {
  expectFinding("second-copy", Checked::general, Level::ok, "4711");
  serving = 0;
  expectFinding("second-copy", Checked::general, Level::ok, "numero non noto");
}

TEST_F(GeneralCheck, NoBridgeIsAWarning) {
  serving.reset();
  EXPECT_THAT(problems(Checked::general), ElementsAre("not-running"));
  expectFinding("not-running", Checked::general, Level::warning, "non \xE8 in funzione");
}

TEST_F(GeneralCheck, SettingsThatAreMissingOrCannotBeRead) {
  inspection.unreadable = {fake::lower(own)};
  expectFinding("settings-unreadable", Checked::general, Level::error, "C:\\cassa\\_Tellaxis.ini");
  inspection.unreadable.clear();
  computer.files.erase(own);
  EXPECT_THAT(problems(Checked::general), ElementsAre("settings-unreadable"));
}

TEST_F(GeneralCheck, SettingsThatCannotBeWritten) {
  inspection.unwritable = {fake::lower(own)};
  EXPECT_THAT(problems(Checked::general), ElementsAre("settings-not-writable"));
  expectFinding("settings-not-writable", Checked::general, Level::error, "C:\\cassa\\_Tellaxis.ini");
}

TEST_F(GeneralCheck, AMainFolderThatCannotBeWritten) {
  inspection.unwritable = {"c:\\cassa"};
  EXPECT_THAT(problems(Checked::general), ElementsAre("main-folder-not-writable"));
  expectFinding("main-folder-not-writable", Checked::general, Level::error, "C:\\cassa");
}

TEST_F(GeneralCheck, ADiskWithLessThanAHundredMegabytes) {
  inspection.free = 100ULL * 1024 * 1024;
  EXPECT_THAT(problems(Checked::general), IsEmpty());
  *inspection.free -= 1;
  EXPECT_THAT(problems(Checked::general), ElementsAre("disk-nearly-full"));
  expectFinding("disk-nearly-full", Checked::general, Level::error, "99 MB");
}

TEST_F(GeneralCheck, APointOfSaleFolderOrFileThatIsNotThere) {
  computer.files.erase("C:\\MERIDIA\\_Local.ini");
  EXPECT_THAT(problems(Checked::general), ElementsAre("pos-folder-missing"));
  expectFinding("pos-folder-missing", Checked::general, Level::warning, "C:\\MERIDIA\\_Local.ini");
  setting("Orbis_Directory", "D:\\altrove");
  expectFinding("pos-folder-missing", Checked::general, Level::warning, "La cartella dell'applicativo D:\\altrove");
}

TEST_F(GeneralCheck, AFolderOfTheMetricsThatIsNotThere) {
  EXPECT_THAT(problems(Checked::general), IsEmpty());
  options.metrics = "figure\\tellaxis.prom";
  EXPECT_THAT(problems(Checked::general), ElementsAre("metrics-folder-missing"));
  expectFinding("metrics-folder-missing", Checked::general, Level::warning, "C:\\cassa\\figure ");
  computer.files.addFolder("C:\\cassa\\figure");
  EXPECT_THAT(problems(Checked::general), IsEmpty());
}

TEST_F(GeneralCheck, AFolderOfTheMetricsThatCannotBeWritten) {
  options.metrics = "D:\\figure\\tellaxis.prom";
  computer.files.addFolder("D:\\figure");
  inspection.unwritable = {"d:\\figure"};
  EXPECT_THAT(problems(Checked::general), ElementsAre("metrics-folder-not-writable"));
  expectFinding("metrics-folder-not-writable", Checked::general, Level::warning, "D:\\figure ");
}

TEST(CheckCodes, EveryProblemHasARemedyAndEveryNameIsItsOwn) {
  std::vector<std::string_view> names;
  for (const CodeRow& row : checkCodes()) {
    EXPECT_EQ(row.remedy.empty(), row.level < Level::warning) << row.name;
    names.push_back(row.name);
  }
  std::ranges::sort(names);
  EXPECT_EQ(std::ranges::adjacent_find(names), names.end());
}

}  // namespace
}  // namespace tellaxis
