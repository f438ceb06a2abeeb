// Check commands: what the command line asks for, and status and form of the answers.
#include "app/commands/check_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/command_line.h"
#include "app/commands/ports_command.h"
#include "app/commands/trial_command.h"
#include "fake/computer.h"
#include "fake/inspection.h"

namespace tellaxis {
namespace {

using testing::HasSubstr;

struct CheckCommand : testing::Test {
  CheckCommand() {
    computer.files.addFolder("C:\\cassa");
    computer.files.put("C:\\cassa\\_Tellaxis.ini", "");
  }
  void setting(std::string_view key, std::string_view value) {
    computer.profiles.put("C:\\cassa\\_Tellaxis.ini", "VARIE", key, value);
  }
  CommandResult check(CheckOptions request = {}) {
    return showCheck(computer.host, inspection, {}, "C:\\cassa", 4711, request);
  }

  fake::Computer computer;
  fake::Inspection inspection{computer.files, computer.processes};
};

TEST_F(CheckCommand, WarningsAloneLeaveTheStatusAtZero) {
  const CommandResult result = check();
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.isReport);
  EXPECT_THAT(result.text, HasSubstr("0 errori, 1 avviso."));
}

TEST_F(CheckCommand, AnErrorIsStatusOneAndStillAReport) {
  setting("RF_Active", "-1");
  const CommandResult result = check({.json = true});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.isReport);
  EXPECT_THAT(result.text, HasSubstr("\"code\":\"layout-unknown\""));
}

TEST_F(CheckCommand, ServersAreAskedOnlyOnRequest) {
  setting("FTP_Indirizzo", "ftp.example");
  computer.ftpClients.login = platform::FtpLogin::refused;
  EXPECT_EQ(check().status, 0);
  EXPECT_EQ(check({.network = true}).status, 1);
}

TEST_F(CheckCommand, PortsTellWhoHasThemAndPrintersWhatIsBehindThem) {
  computer.serialPorts.known = {{.number = 3, .device = "/dev/ttyUSB0", .description = "Adattatore"},
                                {.number = 0, .device = "/dev/ttyS5"}};
  inspection.ports[3] = {.access = platform::PortAccess::held, .device = "/dev/ttyUSB0", .heldBy = "minicom (9)"};
  computer.Printer.installed = {{"Caff\xE8", "LPT1:"}, {"PDF", "FILE:"}};
  const platform::PrinterDefinition listed{.printer = {"Caff\xE8", "LPT1:"},
                                           .target = platform::EscPosNetworkTarget{.host = "10.0.0.9", .port = 9100},
                                           .place = {}};
  const CommandResult result = showPorts(computer.host, inspection, {listed});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.text, HasSubstr("  COM3  /dev/ttyUSB0  Adattatore  in uso da minicom (9)\n"
                                     "  -     /dev/ttyS5\n"));
  EXPECT_THAT(result.text, HasSubstr("  Caff\xC3\xA8  LPT1:  escpos:tcp://10.0.0.9:9100  pronta\n"));
  EXPECT_THAT(result.text, HasSubstr("\n  PDF    FILE:  "));
  EXPECT_FALSE(inspection.askedToOpen);
}

TEST_F(CheckCommand, WithoutLinesAndPrintersBothSaySo) {
  EXPECT_EQ(showPorts(computer.host, inspection, {}).text, "Porte seriali:\n  nessuna\n\nStampanti:\n  nessuna\n");
}

TEST_F(CheckCommand, ATrialThatIsNotTakenIsStatusOne) {
  setting("Display_Active", "-1");
  setting("Display_Type", "ASEM");
  setting("Display_File", "C:\\cassa\\display.txt");
  const CommandResult result = tryOnce(computer.host, {}, "C:\\cassa", Device::display, true);
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.isReport);
  EXPECT_THAT(result.text, HasSubstr("display: dopo 20 secondi"));
  EXPECT_TRUE(computer.journal.callsThatBegin("write ").empty()) << "the settings are only read";
}

TEST(CheckArguments, AreReadForTheirCommand) {
  const auto read = [](std::vector<std::string> words) {
    words.insert(words.end(), {"--main-folder", "."});
    return std::get<CommandLine>(readCommandLine("tellaxisd", words));
  };
  EXPECT_EQ(read({"controlla"}).command, Command::controlla);
  EXPECT_FALSE(read({"controlla"}).check.json || read({"controlla"}).check.network);
  EXPECT_TRUE(read({"controlla", "--json"}).check.json);
  EXPECT_TRUE(read({"--rete", "controlla"}).check.network);
  EXPECT_EQ(read({"prova", "ricevuta"}).tried, Device::slipPrinter);
  EXPECT_EQ(read({"prova", "preconto"}).tried, Device::courtesyPrinter);
  EXPECT_EQ(read({"prova", "display"}).tried, Device::display);
  EXPECT_EQ(read({"porte"}).command, Command::porte);
}

TEST(CheckArguments, TheFiscalPrinterIsNeverTried) {
  for (const char* const device : {"fiscale", "fiscal", "", "forno"}) {
    const auto read = readCommandLine("tellaxisd", std::vector<std::string>{"--main-folder", ".", "prova", device});
    ASSERT_TRUE(std::holds_alternative<EndAtOnce>(read)) << device;
    EXPECT_EQ(std::get<EndAtOnce>(read).status, statusUnusable);
    EXPECT_THAT(std::get<EndAtOnce>(read).text, HasSubstr("display, preconto o ricevuta"));
  }
}

}  // namespace
}  // namespace tellaxis
