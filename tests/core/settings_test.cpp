// Settings: load and save between the settings file and the main form.
#include "core/settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "core/bridge.h"
#include "core/catalogue.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A cash desk whose main folder is C:\cassa.
struct Desk {
  Desk() { setMainFolder(bridge.settings, "C:\\cassa"); }

  void store(std::string_view key, std::string_view value) { computer.profiles.put(file, "Varie", key, value); }
  std::string stored(std::string_view key) { return computer.profiles.value(file, "Varie", key).value_or("(absent)"); }

  static constexpr std::string_view file = "C:\\cassa\\_Tellaxis.ini";
  fake::Computer computer;
  Bridge bridge{computer.host};
  MainForm& form = bridge.form;
};

class Load : public testing::Test, protected Desk {};
class Save : public testing::Test, protected Desk {};

TEST_F(Load, WithoutASettingsFileShowsTheDefaults) {
  CaricaImpostazioni(bridge);
  EXPECT_EQ(form.Orbis51Dir.Text, "C:\\MERIDIA");
  EXPECT_EQ(form.chkOrbis.Value, 1);
  EXPECT_EQ(form.MF_Com.Text, "1");
  EXPECT_EQ(form.MF_Param.Text, "9600,N,8,1");
  EXPECT_EQ(form.MF_Delay.Text, "50");
  EXPECT_EQ(form.Cort_Printer.Text, "NON PRESENTE");
  EXPECT_EQ(bridge.settings.Cort_Sett, "9600,N,8,1");
  EXPECT_EQ(form.DLY_Active.Value + form.MF_Active.Value + form.RF_Active.Value + form.Cort_Active.Value, 0);
  EXPECT_EQ(bridge.settings.pointOfSaleSettingsFile, "C:\\MERIDIA\\_Local.ini");
}

TEST_F(Load, ReadsTheKeysInCatalogueOrder) {
  store("Display_Active", "-1");
  CaricaImpostazioni(bridge);
  std::vector<std::string> expected;
  for (const Setting& row : catalogue())
    expected.push_back((row.read == ReadKind::raw ? "read [Varie] " : "read [VARIE] ") + std::string(row.loadedAs) +
                       " of C:\\cassa\\_Tellaxis.ini");
  EXPECT_EQ(expected.size(), 30U);
  EXPECT_EQ(computer.journal.calls(), expected);
}

/// The keys of texts, and the control that shows each.
std::vector<std::pair<std::string_view, std::string*>> textsOf(MainForm& form) {
  return {{"Orbis_Directory", &form.Orbis51Dir.Text},
          {"Display_File", &form.DLY_File.Text},
          {"Display_Type", &form.DLY_Type.Text},
          {"Display_COM", &form.DLY_com.Text},
          {"Display_Parametri", &form.DLY_Param.Text},
          {"MF_File", &form.MF_File.Text},
          {"MF_File_Output", &form.MF_FileOutput.Text},
          {"MF_Type", &form.MF_Type.Text},
          {"MF_Prot", &form.MF_Protocol.Text},
          {"MF_COM", &form.MF_Com.Text},
          {"MF_Parametri", &form.MF_Param.Text},
          {"MF_Ritardo", &form.MF_Delay.Text},
          {"MF_Driver", &form.MF_Driver.Text},
          {"RF_Stampante", &form.RF_Printer.Text},
          {"RF_Seriale", &form.RF_COM.Text},
          {"RF_File", &form.RF_File.Text},
          {"RF_Righe", &form.RF_Righe.Text},
          {"CORT_Printer", &form.Cort_Printer.Text},
          {"CORT_File", &form.Cort_File.Text},
          {"CORT_COM", &form.Cort_COM.Text}};
}

TEST_F(Load, ShowsEveryTextInItsControl) {
  store("Display_Active", "-1");
  store("Display_Delay", "7");
  for (const auto& [key, shown] : textsOf(form)) store(key, "testo " + std::string(key));
  CaricaImpostazioni(bridge);
  for (const auto& [key, shown] : textsOf(form)) EXPECT_EQ(*shown, "testo " + std::string(key)) << key;
  EXPECT_EQ(form.DLY_Delay.Text, "7");
}

TEST_F(Load, FindsAKeySpelledAsTheSaveSpellsIt) {
  store("MF_Type", "91 - RCH ONDA");
  CaricaImpostazioni(bridge);
  EXPECT_EQ(form.MF_Type.Text, "91 - RCH ONDA");
}

TEST_F(Load, ASwitchedOffDisplayLeavesItsFieldsAndItsPort) {
  store("Display_Active", "-1");
  store("Display_File", "C:\\d.txt");
  store("Display_COM", "3");
  store("Display_Parametri", "2400,E,7,2");
  CaricaImpostazioni(bridge);
  store("Display_Active", "0");
  store("Display_File", "C:\\altro.txt");
  store("Display_COM", "4");
  CaricaImpostazioni(bridge);
  EXPECT_EQ(form.DLY_Active.Value, 0);
  EXPECT_EQ(form.DLY_File.Text, "C:\\d.txt");
  EXPECT_FALSE(bridge.settings.Display_Active);
  EXPECT_EQ(form.MSComm1.CommPort(), 3);
  EXPECT_EQ(form.MSComm1.Settings().baud, 2400);
}

TEST_F(Load, ADisplayTypeOfZeroIsNotShown) {
  store("Display_Active", "-1");
  store("Display_Type", "ASEM");
  CaricaImpostazioni(bridge);
  store("Display_Type", "0");
  CaricaImpostazioni(bridge);
  EXPECT_EQ(form.DLY_Type.Text, "ASEM");
  EXPECT_EQ(bridge.settings.Display_Type, "0");
}

TEST_F(Load, ADisplayJobFileStaysWhereItIs) {
  store("Display_Active", "-1");
  store("Display_File", "C:\\d.txt");
  computer.files.put("C:\\d.txt", "BUONGIORNO");
  CaricaImpostazioni(bridge);
  EXPECT_TRUE(computer.files.has("C:\\d.txt"));
}

TEST_F(Load, AValueThatCannotBeConvertedLeavesWhatWasThere) {
  store("Display_Active", "-1");
  store("Display_COM", "2");
  store("Display_Delay", "30");
  store("MF_Active", "-1");
  CaricaImpostazioni(bridge);
  store("Display_COM", "COM2");
  store("Display_Delay", "tanto");
  store("MF_Active", "forse");
  store("Orbis_Setting", "forse");
  CaricaImpostazioni(bridge);
  EXPECT_EQ(form.MSComm1.CommPort(), 2);
  EXPECT_EQ(bridge.settings.Display_Delay, 30);
  EXPECT_TRUE(bridge.settings.MF_Active);
  EXPECT_TRUE(bridge.settings.Orbis_Setting);
  EXPECT_THAT(computer.trace.failures,
              testing::IsSupersetOf({"lettura impostazione Orbis_Setting: valore non valido: forse",
                                     "lettura impostazione Display_Delay: valore non valido: tanto",
                                     "CommPort COM2: non \xE8 un numero di porta",
                                     "lettura impostazione MF_Active: valore non valido: forse"}));
}

TEST_F(Load, TheCourtesyPortIsSetForTheSerialPrinterAlone) {
  store("Cort_Printer", "SAMSUNG");
  store("Cort_Com", "5");
  CaricaImpostazioni(bridge);
  EXPECT_EQ(form.COMPreconto.CommPort(), 1);
  store("Cort_Printer", "DPT-282");
  store("Cort_Sett", "19200,N,8,1");
  CaricaImpostazioni(bridge);
  EXPECT_EQ(form.COMPreconto.CommPort(), 5);
  EXPECT_EQ(form.COMPreconto.Settings().baud, 19200);
}

TEST_F(Load, NumbersKeepTheirKindForTheDevices) {
  store("MF_Ritardo", "25");
  store("RF_Seriale", "LPT1:");
  CaricaImpostazioni(bridge);
  EXPECT_EQ(bridge.settings.MF_Ritardo, Value(Currency{250'000}));
  EXPECT_EQ(bridge.settings.RF_Seriale, Value(std::string("LPT1:")));
  EXPECT_EQ(form.MF_Delay.Text, "25");
}

TEST_F(Load, AFailingReadGivesTheDefaultAndTheRestIsRead) {
  fake::sweepFailingSteps(
      [](std::size_t failingCall) {
        Desk desk;
        for (const Setting& row : catalogue()) desk.store(row.loadedAs, "1");
        desk.computer.journal.failCall(failingCall);
        CaricaImpostazioni(desk.bridge);
        return desk.computer.journal.calls();
      },
      {{.call = "read [VARIE] Display_Active of C:\\cassa\\_Tellaxis.ini", .dropped = 5}});
}

TEST_F(Save, WritesTheKeysInTheirOrderAndLoadsAgain) {
  CaricaImpostazioni(bridge);
  char letter = 'a';
  for (const auto& [key, shown] : textsOf(form)) *shown = letter++;
  computer.journal.clear();
  cmdSalva_Click(bridge);
  EXPECT_THAT(computer.journal.callsThatBegin("write"),
              ElementsAre("write [Varie] Orbis_Directory=a to C:\\cassa\\_Tellaxis.ini",
                          "write [Varie] Orbis_Setting=1 to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] Display_Active=0 to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] Display_File=b to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] Display_Type=c to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] Display_COM=d to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] Display_Parametri=e to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_Active=0 to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_File=f to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_File_Output=g to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_Type=h to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_Prot=i to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_COM=j to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_Parametri=k to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_Buffer=0 to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] MF_Ritardo=l to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] RF_Active=0 to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] RF_Stampante=n to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] RF_Seriale=o to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] RF_File=p to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] RF_Righe=q to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] CORT_Active=0 to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] CORT_Printer=r to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] CORT_File=s to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] CORT_COM=t to C:\\cassa\\_Tellaxis.ini",
                          "write [VARIE] CORT_Logo=0 to C:\\cassa\\_Tellaxis.ini"));
  EXPECT_EQ(computer.journal.calls().back(), "read [VARIE] Cort_Logo of C:\\cassa\\_Tellaxis.ini");
}

TEST_F(Save, ADeviceThatIsNotPresentIsSavedAsInactive) {
  form.MF_Active.Value = 1;
  form.MF_Type.Text = "0 - NON PRESENTE";
  form.DLY_Active.Value = 1;
  form.DLY_Type.Text = "NON PRESENTE";
  form.Cort_Active.Value = 1;
  form.Cort_Printer.Text = "NON PRESENTE";
  form.RF_Active.Value = 1;
  form.RF_File.Text = "  ";
  cmdSalva_Click(bridge);
  EXPECT_EQ(stored("MF_Active"), "0");
  EXPECT_EQ(stored("Display_Active"), "0");
  EXPECT_EQ(stored("Cort_Active"), "0");
  EXPECT_EQ(stored("RF_Active"), "0");
  EXPECT_EQ(form.MF_Active.Value, 0);
  EXPECT_EQ(form.Cort_Active.Value, 0);
}

TEST_F(Save, AConfiguredDeviceIsSavedAsActive) {
  form.MF_Active.Value = form.DLY_Active.Value = form.Cort_Active.Value = form.RF_Active.Value = 1;
  form.MF_Type.Text = "91 - RCH ONDA";
  form.DLY_Type.Text = "ASEM";
  form.Cort_Printer.Text = "SAMSUNG";
  form.RF_File.Text = "C:\\rf.txt";
  cmdSalva_Click(bridge);
  for (const char* key : {"MF_Active", "Display_Active", "Cort_Active", "RF_Active"})
    EXPECT_EQ(stored(key), "-1") << key;
  EXPECT_EQ(form.MF_Active.Value, 1);
}

TEST_F(Save, AnEmptiedFieldKeepsItsOldValueInTheFile) {
  store("MF_File", "C:\\scontrino.txt");
  CaricaImpostazioni(bridge);
  form.MF_File.Text.clear();
  cmdSalva_Click(bridge);
  EXPECT_EQ(stored("MF_File"), "C:\\scontrino.txt");
  EXPECT_EQ(form.MF_File.Text, "C:\\scontrino.txt");
}

TEST_F(Save, AnEmptiedPointOfSaleFolderIsStoredEmptyAndShownEmpty) {
  store("Orbis_Directory", "D:\\POS");
  CaricaImpostazioni(bridge);
  form.Orbis51Dir.Text.clear();
  cmdSalva_Click(bridge);
  EXPECT_EQ(stored("Orbis_Directory"), "");
  EXPECT_EQ(form.Orbis51Dir.Text, "");
  EXPECT_EQ(bridge.settings.pointOfSaleSettingsFile, "\\_Local.ini");
}

TEST_F(Save, SettingsWithoutASaveKeepWhatTheFileSays) {
  std::vector<std::string_view> neverSaved;
  for (const Setting& row : catalogue())
    if (row.write == WriteKind::never) neverSaved.push_back(row.loadedAs);
  EXPECT_THAT(neverSaved, ElementsAre("Display_Delay", "MF_ChkLog", "MF_Driver", "Cort_Sett"));
  EXPECT_EQ(savedSettings().size(), 26U);
  CaricaImpostazioni(bridge);
  form.MF_chkLog.Value = 1;
  form.MF_Driver.Text = "driver.exe";
  cmdSalva_Click(bridge);
  EXPECT_EQ(stored("MF_ChkLog"), "(absent)");
  EXPECT_EQ(stored("MF_Driver"), "(absent)");
  EXPECT_EQ(form.MF_chkLog.Value, 0);
}

TEST_F(Save, CheckBoxesAreStoredAsOneAndZero) {
  form.chkOrbis.Value = 0;
  form.MF_Buffer.Value = 1;
  form.Cort_Logo.Value = 1;
  cmdSalva_Click(bridge);
  EXPECT_EQ(stored("Orbis_Setting"), "0");
  EXPECT_EQ(stored("MF_Buffer"), "1");
  EXPECT_EQ(stored("Cort_Logo"), "1");
  EXPECT_EQ(form.MF_Buffer.Value, 1);
}

TEST_F(Save, AFailingStepLeavesTheRestToBeSavedAndLoaded) {
  const auto run = [](std::size_t failingCall) {
    Desk desk;
    for (const Setting& row : catalogue()) desk.store(row.loadedAs, "1");
    CaricaImpostazioni(desk.bridge);
    desk.computer.journal.failCall(failingCall);
    cmdSalva_Click(desk.bridge);
    return desk.computer.journal.calls();
  };
  fake::sweepFailingSteps(run, {{.call = "read [VARIE] Display_Active of C:\\cassa\\_Tellaxis.ini", .dropped = 5}});
}

}  // namespace
}  // namespace tellaxis
