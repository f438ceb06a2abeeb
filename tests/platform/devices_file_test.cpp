// Tests of the devices file: what it may say, and how mistakes in it are named.
#include "platform/devices_file.h"

#include <gmock/gmock.h>

#include "platform/temporary_folder.h"
#include "text/code_page.h"

namespace tellaxis::platform {
namespace {

using test::TemporaryFolder;
using testing::EndsWith;

DevicesFile parsed(std::string_view text) {
  auto result = parseDevicesFile(text, "devices.toml");
  const auto* error = std::get_if<DevicesFileError>(&result);
  EXPECT_EQ(error, nullptr) << (error != nullptr ? error->message : "");
  return error == nullptr ? std::get<DevicesFile>(std::move(result)) : DevicesFile();
}

std::string errorOf(std::string_view text) {
  auto result = parseDevicesFile(text, "devices.toml");
  const auto* error = std::get_if<DevicesFileError>(&result);
  return error == nullptr ? "nessun errore" : error->message;
}

std::string withTarget(const std::string& target) {
  return "[[printer]]\nname = \"P\"\nport = \"COM3:\"\ntarget = \"" + target + "\"\n";
}

template <class Target>
Target targetOf(const std::string& text) {
  const DevicesFile devices = parsed(withTarget(text));
  if (devices.printers.size() == 1)
    if (const auto* target = std::get_if<Target>(&devices.printers.front().target)) return *target;
  ADD_FAILURE() << "another kind of target: " << text;
  return {};
}

TEST(DevicesFile, ListsPrintersAndSerialLinesInFileOrder) {
  const DevicesFile devices = parsed(R"(
[[printer]]
name   = "EPSON TM-L90 Receipt"
port   = "LPT1:"
target = "folder:spool/l90"

[[serial]]
port   = 1
device = "/dev/ttyUSB0"

[[printer]]
name   = "Caffè"
port   = "COM3:"
target = "folder:spool/caffè"
)");
  ASSERT_EQ(devices.printers.size(), 2U);
  EXPECT_EQ(devices.printers[0].printer.DeviceName, "EPSON TM-L90 Receipt");
  EXPECT_EQ(devices.printers[0].printer.Port, "LPT1:");
  EXPECT_EQ(std::get<FolderTarget>(devices.printers[0].target).folder, "spool/l90");
  EXPECT_EQ(devices.printers[0].place.line, 5U);
  EXPECT_EQ(devices.printers[1].printer.DeviceName, "Caff\xE8");
  EXPECT_EQ(std::get<FolderTarget>(devices.printers[1].target).folder, "spool/caffè");
  ASSERT_EQ(devices.serialLines.size(), 1U);
  EXPECT_EQ(devices.serialLines[0].port, 1);
  EXPECT_EQ(devices.serialLines[0].device, "/dev/ttyUSB0");
}

TEST(DevicesFile, AnEmptyFileListsNothing) {
  EXPECT_TRUE(parsed("").printers.empty());
  EXPECT_TRUE(parsed("# solo un commento\n").serialLines.empty());
}

TEST(DevicesFile, EverythingBeyondTheGivenBehaviourIsOffUntilSwitchedOn) {
  for (const char* text : {"", "[bridge]\n", "[bridge]\narchive = false\ndiary = \"d\"\n"}) {
    const BridgeOptions options = parsed(text).options;
    EXPECT_EQ(options.keepDays, std::nullopt);
    EXPECT_FALSE(options.archive || options.keepWaiting || options.prompt || options.midnight || options.eventLog)
        << text;
    EXPECT_EQ(options.metrics + options.role, "");
  }
  EXPECT_EQ(parsed("").options.diary, "");
  EXPECT_FALSE(parsed(withTarget("folder:x")).printers.front().printer.waitForPaper);
}

TEST(DevicesFile, ReadsEveryOption) {
  const BridgeOptions options = parsed(R"(
[bridge]
diary     = "diario/cassà"
keep_days = 90
archive   = true
metrics   = "/var/lib/tellaxis.prom"
role      = "SERVER"
)")
                                    .options;
  EXPECT_EQ(options.diary, "diario/cassà");
  EXPECT_EQ(options.keepDays, 90);
  EXPECT_TRUE(options.archive);
  EXPECT_EQ(options.metrics, "/var/lib/tellaxis.prom");
  EXPECT_EQ(options.role, "SERVER");
  EXPECT_EQ(parsed("[bridge]\nrole = \"CLIENT\"").options.role, "CLIENT");
  EXPECT_TRUE(parsed(withTarget("folder:x") + "wait_for_paper = true\n").printers.front().printer.waitForPaper);
}

TEST(DevicesFile, EachSwitchIsItsOwn) {
  const auto switches = [](const char* key) {
    const BridgeOptions on = parsed("[bridge]\n" + std::string(key) + " = true\n").options;
    return std::vector<bool>{on.keepWaiting, on.prompt, on.midnight, on.eventLog};
  };
  EXPECT_THAT(switches("keep_waiting"), testing::ElementsAre(true, false, false, false));
  EXPECT_THAT(switches("prompt"), testing::ElementsAre(false, true, false, false));
  EXPECT_THAT(switches("midnight"), testing::ElementsAre(false, false, true, false));
  EXPECT_THAT(switches("event_log"), testing::ElementsAre(false, false, false, true));
}

TEST(DevicesFile, KnowsEveryTarget) {
  EXPECT_EQ(targetOf<FolderTarget>("folder:/var/spool/x").folder, "/var/spool/x");
  EXPECT_EQ(targetOf<QueueTarget>("cups:ricevute").queue, "ricevute");
  EXPECT_EQ(targetOf<EscPosDeviceTarget>("escpos:/dev/usb/lp0").device, "/dev/usb/lp0");
  EXPECT_EQ(targetOf<EscPosQueueTarget>("escpos:cups:pos").queue, "pos");
  const auto network = targetOf<EscPosNetworkTarget>("escpos:tcp://10.0.0.9:9100");
  EXPECT_EQ(network.host, "10.0.0.9");
  EXPECT_EQ(network.port, 9100);
  EXPECT_EQ(targetOf<EscPosNetworkTarget>("escpos:tcp://[::1]:9100").host, "::1");
}

TEST(DevicesFile, ALineOfAReceiptPrinterHasItsSettingsBehindItsName) {
  const auto windows = targetOf<EscPosDeviceTarget>("escpos:COM3:19200,E,7,2");
  EXPECT_EQ(windows.device, "COM3");
  EXPECT_EQ(windows.line, (LineSettings{19200, Parity::even, 7, StopBits::two}));
  const auto linux = targetOf<EscPosDeviceTarget>("escpos:/dev/ttyUSB0:9600,n,8,1,cts");
  EXPECT_EQ(linux.device, "/dev/ttyUSB0");
  EXPECT_EQ(linux.line, (LineSettings{9600, Parity::none, 8, StopBits::one, FlowControl::cts}));
}

TEST(DevicesFile, AColonInADevicesNameBeginsNoSettings) {
  for (const std::string device :
       {"C:/Stampe/uscita.bin", "/dev/serial/by-path/pci-0000:00:14.0-usb-0:2:1.0", "COM3:", "/dev/a:b,c"}) {
    const auto target = targetOf<EscPosDeviceTarget>("escpos:" + device);
    EXPECT_EQ(target.device, device);
    EXPECT_EQ(target.line, std::nullopt);
  }
}

TEST(DevicesFile, RefusesUnknownTargetsWithTheirPlace) {
  for (const char* target :
       {"folder:", "cups:", "escpos:", "escpos:cups:", "escpos:tcp://host", "escpos:tcp://:9100", "escpos:tcp://h:0",
        "escpos:tcp://h:99999", "escpos:COM3:9600,N,9,1", "escpos:COM3:9600,", "escpos::9600,N,8,1",
        "escpos:tcp://h:9100x", "escpos:http://h:1", "spool/l90", "Folder:x"})
    EXPECT_EQ(errorOf(withTarget(target)),
              "devices.toml, riga 4, colonna 10: destinazione sconosciuta \"" + std::string(target) + "\"");
}

struct Mistake {
  const char* text;
  const char* message;
};

TEST(DevicesFile, NamesEveryMistakeByLineAndColumnInOneLine) {
  const Mistake mistakes[] = {
      {"[[printer]\nname = 1", "devices.toml, riga 1, colonna 11: sintassi TOML non valida"},
      {"x = 1", "devices.toml, riga 1, colonna 1: chiave sconosciuta \"x\""},
      {"[[printer]]\nnome = \"P\"", "devices.toml, riga 2, colonna 1: chiave sconosciuta \"nome\""},
      {"\n[[printer]]\nname = \"P\"\ntarget = \"folder:x\"",
       "devices.toml, riga 2, colonna 1: manca la chiave \"port\""},
      {"[[printer]]\nname = 7", "devices.toml, riga 2, colonna 8: \"name\" deve essere un testo fra virgolette"},
      {"[[printer]]\nname = \"\"", "devices.toml, riga 2, colonna 8: \"name\" non ha un valore utilizzabile"},
      {"[[printer]]\nname = \"a\\nb\"", "devices.toml, riga 2, colonna 8: \"name\" non ha un valore utilizzabile"},
      {"[[printer]]\nname = \"日本\"",
       "devices.toml, riga 2, colonna 8: \"name\" ha un carattere che le stampanti non conoscono"},
      {"[printer]\nname = \"P\"", "devices.toml, riga 1, colonna 1: si scrive [[printer]], con due parentesi"},
      {"printer = [1]", "devices.toml, riga 1, colonna 12: si scrive [[printer]], con due parentesi"},
      {"[[serial]]\nport = \"1\"", "devices.toml, riga 2, colonna 8: \"port\" deve essere un numero da 1 a 256"},
      {"[[serial]]\nport = 0", "devices.toml, riga 2, colonna 8: \"port\" deve essere un numero da 1 a 256"},
      {"[[serial]]\nport = 1\ndevice = \"/dev/a\"\n[[serial]]\nport = 1\ndevice = \"/dev/b\"",
       "devices.toml, riga 5, colonna 8: la porta 1 è già definita"},
      {"[bridge]\ndiario = \"d\"", "devices.toml, riga 2, colonna 1: chiave sconosciuta \"diario\""},
      {"[[bridge]]\nprompt = true", "devices.toml, riga 1, colonna 1: si scrive [bridge], con una parentesi sola"},
      {"bridge = 1", "devices.toml, riga 1, colonna 10: si scrive [bridge], con una parentesi sola"},
      {"[bridge]\ndiary = true", "devices.toml, riga 2, colonna 9: \"diary\" deve essere un testo fra virgolette"},
      {"[bridge]\nmetrics = \"\"", "devices.toml, riga 2, colonna 11: \"metrics\" non ha un valore utilizzabile"},
      {"[bridge]\nprompt = 1", "devices.toml, riga 2, colonna 10: \"prompt\" deve essere true o false"},
      {"[bridge]\nmidnight = \"true\"", "devices.toml, riga 2, colonna 12: \"midnight\" deve essere true o false"},
      {"[bridge]\ndiary = \"d\"\nkeep_days = 0",
       "devices.toml, riga 3, colonna 13: \"keep_days\" deve essere un numero da 1 a 36500"},
      {"[bridge]\nkeep_days = 9", "devices.toml, riga 2, colonna 13: \"keep_days\" vale solo insieme a \"diary\""},
      {"[bridge]\narchive = true", "devices.toml, riga 2, colonna 11: \"archive\" vale solo insieme a \"diary\""},
      {"[bridge]\nrole = \"server\"", "devices.toml, riga 2, colonna 8: \"role\" deve essere \"SERVER\" o \"CLIENT\""},
      {"[[printer]]\nname = \"P\"\nport = \"COM3:\"\ntarget = \"folder:x\"\nwait_for_paper = 1",
       "devices.toml, riga 5, colonna 18: \"wait_for_paper\" deve essere true o false"},
      {"[[serial]]\nport = 1", "devices.toml, riga 1, colonna 1: manca la chiave \"device\""},
  };
  for (const Mistake& mistake : mistakes) EXPECT_EQ(errorOf(mistake.text), mistake.message) << mistake.text;
}

TEST(DevicesFile, IsRefusedWhereItsTablesLieTooDeep) {
  std::string dots;
  for (int i = 0; i < 100'000; ++i) dots += "a.";
  EXPECT_EQ(errorOf("[bridge]\n" + dots + "a = 1\n"), "devices.toml, riga 2, colonna 1: troppi punti nella riga");
  EXPECT_EQ(errorOf("[" + dots + "a]\n"), "devices.toml, riga 1, colonna 1: troppi punti nella riga");
  EXPECT_THAT(errorOf("a = " + std::string(100'000, '[')), EndsWith("sintassi TOML non valida"));
  std::string tables = "a = ";
  for (int i = 0; i < 10'000; ++i) tables += "[{ a.a.a.a = \n";
  EXPECT_THAT(errorOf(tables), EndsWith("sintassi TOML non valida"));
}

TEST(DevicesFile, IsRefusedWhereItIsLargerThanAnyRealOne) {
  EXPECT_EQ(errorOf(std::string(std::size_t{256} << 10, '\n')), "nessun errore");
  EXPECT_EQ(errorOf(std::string((std::size_t{256} << 10) + 1, '\n')),
            "devices.toml, riga 1, colonna 1: il file \xC3\xA8 troppo grande: al massimo 256 KB");
}

TEST(DevicesFile, MistakesAreShownInOneLineWhateverTheyAre) {
  EXPECT_EQ(errorOf("\"a\\nb\\u007f\" = 1\n"), "devices.toml, riga 1, colonna 1: chiave sconosciuta \"a?b?\"");
  EXPECT_EQ(errorOf(std::string(5000, 'k') + " = 1\n"),
            "devices.toml, riga 1, colonna 1: chiave sconosciuta \"" + std::string(60, 'k') + "...\"");
  std::string accents = "\"k";
  for (int i = 0; i < 40; ++i) accents += "\xC3\xA8";
  EXPECT_TRUE(isUtf8(errorOf(accents + "\" = 1\n")));
}

TEST(DevicesFile, LettersBeyondAsciiStandInQuotesOnly) {
  for (char32_t letter = 0xA1; letter < 0x10000; ++letter) {
    const bool isBlank = letter == 0x1680 || letter == 0x180E || (letter >= 0x2000 && letter <= 0x200B) ||
                         letter == 0x202F || letter == 0x205F || letter == 0x2060 || letter == 0x3000 ||
                         letter == 0xFEFF;
    if (isBlank || (letter >= 0xD800 && letter < 0xE000)) continue;
    std::string utf8;
    appendUtf8(utf8, letter);
    ASSERT_THAT(errorOf(utf8 + " = 1\n"), EndsWith("sintassi TOML non valida")) << static_cast<int>(letter);
    ASSERT_THAT(errorOf("[bridge" + utf8 + "]\n"), EndsWith("sintassi TOML non valida")) << static_cast<int>(letter);
  }
  EXPECT_EQ(errorOf("# \xC3\xA8\n[bridge]\ndiary = \"\xC3\xA8\"\n"), "nessun errore");
}

TEST(DevicesFile, InAForeignEncodingIsRefused) {
  for (const std::string_view text :
       {std::string_view("\xFF\xFE[\0b\0", 6), std::string_view("[bridge]\nrole = \"\xE8\"\n"),
        std::string_view("[bridge]\nrole\0 = 1\n", 19), std::string_view("\xED\xA0\x80 = 1\n")})
    EXPECT_THAT(errorOf(std::string(text)), EndsWith("sintassi TOML non valida"));
}

TEST(DevicesFile, IsReadFromDisk) {
  const TemporaryFolder folder;
  const auto result = readDevicesFile(folder.write("d.toml", withTarget("folder:x")));
  ASSERT_TRUE(std::holds_alternative<DevicesFile>(result));
  EXPECT_EQ(std::get<DevicesFile>(result).printers.size(), 1U);
}

TEST(DevicesFile, AMissingFileOrAFolderInItsPlaceCannotBeRead) {
  const TemporaryFolder folder;
  for (const std::string& path : {folder / "none.toml", folder / "."}) {
    const auto result = readDevicesFile(path);
    ASSERT_TRUE(std::holds_alternative<DevicesFileError>(result));
    EXPECT_EQ(std::get<DevicesFileError>(result).message, path + ": il file non si può leggere");
  }
}

TEST(DevicesFile, RelativePathsLieInTheMainFolder) {
  EXPECT_EQ(underMainFolder("/var/spool", "/srv/main"), "/var/spool");
#ifndef _WIN32
  EXPECT_EQ(underMainFolder("spool/l90", "/srv/main"), "/srv/main/spool/l90");
#endif
}

}  // namespace
}  // namespace tellaxis::platform
