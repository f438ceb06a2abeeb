// Check desk: a healthy cash desk with every device, of which each test spoils one thing.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "check/check.h"
#include "fake/computer.h"
#include "fake/inspection.h"

namespace tellaxis {

struct CheckDesk : testing::Test {
  static constexpr std::string_view own = "C:\\cassa\\_Tellaxis.ini";

  CheckDesk() {
    for (const char* const folder : {"C:\\cassa", "C:\\cassa\\Orbis", "C:\\cassa\\CortOrbis", "C:\\MERIDIA",
                                     "C:\\MERIDIA\\Epson", "C:\\MF", "C:\\DLY", "C:\\RF", "c:\\Tellaxis"})
      computer.files.addFolder(folder);
    for (const std::string_view file : {own, std::string_view("C:\\MERIDIA\\_Local.ini"), logo})
      computer.files.put(file, "");
    computer.processes.installed = {"C:\\MF\\driver.exe"};
    inspection.ports = {{3, {.access = platform::PortAccess::free, .device = "COM3"}}};
    computer.Printer.installed = {{"EPSON TM-L90 Receipt", "LPT1:"}, {"SAMSUNG SRP-500", "COM4:"}};
    computer.Printer.pictures = {{.file = std::string(logo), .width = 8, .height = 8}};
    configureFiscal();
    configureOthers();
  }

  void setting(std::string_view key, std::string_view value) { computer.profiles.put(own, "VARIE", key, value); }

  std::vector<Finding> findings() {
    return checkInstallation(computer.host, inspection, options,
                             {.mainFolder = "C:\\cassa", .servingProcess = serving, .network = network});
  }

  /// The codes of one device's warnings and errors.
  std::vector<std::string> problems(Checked device) {
    std::vector<std::string> codes;
    for (const Finding& finding : findings()) {
      if (finding.device != device || finding.level < Level::warning) continue;
      EXPECT_NE(finding.remedy, "") << finding.code;
      codes.emplace_back(finding.code);
    }
    return codes;
  }

  /// The first finding of this code.
  Finding found(std::string_view code) {
    for (Finding& finding : findings())
      if (finding.code == code) return finding;
    return {.code = "none"};
  }

  /// Expects a finding of this code and level whose text says this.
  void expectFinding(std::string_view code, Checked device, Level level, std::string_view text) {
    const Finding finding = found(code);
    EXPECT_EQ(finding.code, code);
    EXPECT_EQ(finding.device, device) << code;
    EXPECT_EQ(finding.level, level) << code;
    EXPECT_THAT(finding.text, testing::HasSubstr(std::string(text))) << code;
  }

  static constexpr std::string_view logo = "c:\\Meridia\\LogoCassa.bmp";

  fake::Computer computer;
  fake::Inspection inspection{computer.files, computer.processes};
  platform::BridgeOptions options{.midnight = true};
  std::optional<std::uint32_t> serving = 4711;
  bool network = false;

 private:
  void configureFiscal() {
    setting("Orbis_Directory", "C:\\MERIDIA");
    setting("MF_Active", "-1");
    setting("MF_Type", "93 - RCH NUCLEO");
    setting("MF_Prot", "NUCLEO DRIVER - 93");
    setting("MF_File", "C:\\MF\\in.txt");
    setting("MF_File_Output", "C:\\MF\\out.txt");
    setting("MF_Driver", "C:\\MF\\driver.exe /x");
  }

  void configureOthers() {
    setting("Display_Active", "-1");
    setting("Display_File", "C:\\DLY\\display.txt");
    setting("Display_Type", "ASEM");
    setting("Display_COM", "3");
    setting("Display_Parametri", "9600,N,8,1");
    setting("Display_Delay", "5");
    setting("RF_Active", "-1");
    setting("RF_Stampante", "EPSON TM-L90 Receipt");
    setting("RF_Seriale", "LPT1:");
    setting("RF_File", "C:\\RF\\ricevuta.txt");
    setting("CORT_Active", "-1");
    setting("CORT_Printer", "SAMSUNG");
    setting("CORT_COM", "4");
    setting("CORT_Logo", "-1");
    setting("CORT_File", logo);
  }
};

}  // namespace tellaxis
