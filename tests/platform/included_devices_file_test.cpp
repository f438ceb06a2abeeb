// Tests of a devices file that includes another: what of both counts, and in which file a mistake is named.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "platform/devices_file.h"
#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

using test::TemporaryFolder;

std::string errorOf(std::string_view text) {
  const auto result = parseDevicesFile(text, "devices.toml");
  const auto* error = std::get_if<DevicesFileError>(&result);
  return error == nullptr ? "nessun errore" : error->message;
}

/// What `own`, which lies in a folder and includes comune.toml, says together with that file.
std::variant<DevicesFile, DevicesFileError> together(const std::string& own, const std::string& common) {
  return parseDevicesFile("include = \"comune.toml\"\n" + own, "cassa/devices.toml",
                          [&](const std::string& file) -> std::optional<std::string> {
                            if (file == underMainFolder("comune.toml", "cassa")) return common;
                            return std::nullopt;
                          });
}

DevicesFile bothParsed(const std::string& own, const std::string& common) {
  auto result = together(own, common);
  const auto* error = std::get_if<DevicesFileError>(&result);
  EXPECT_EQ(error, nullptr) << (error != nullptr ? error->message : "");
  return error == nullptr ? std::get<DevicesFile>(std::move(result)) : DevicesFile();
}

std::string errorOfBoth(const std::string& own, const std::string& common) {
  const auto result = together(own, common);
  const auto* error = std::get_if<DevicesFileError>(&result);
  return error == nullptr ? "nessun errore" : error->message;
}

constexpr const char* commonDesk = R"([[printer]]
name   = "Preconti"
port   = "LPT1:"
target = "folder:preconti"
wait_for_paper = true

[[printer]]
name   = "Ricevute"
port   = "COM3:"
target = "folder:ricevute"

[[serial]]
port   = 1
device = "/dev/ttyUSB0"

[[serial]]
port   = 2
device = "/dev/ttyUSB1"

[bridge]
diary     = "diario"
keep_days = 30
archive   = true
prompt    = true
)";

constexpr const char* printerP = "[[printer]]\nname = \"P\"\nport = \"COM3:\"\ntarget = \"folder:x\"\n";

TEST(IncludedDevicesFile, AloneIsAsIfItStoodInTheDesksOwn) {
  const DevicesFile devices = bothParsed("", commonDesk);
  ASSERT_EQ(devices.printers.size(), 2U);
  EXPECT_EQ(devices.printers[0].printer.DeviceName, "Preconti");
  EXPECT_TRUE(devices.printers[0].printer.waitForPaper);
  EXPECT_EQ(devices.printers[1].printer.DeviceName, "Ricevute");
  ASSERT_EQ(devices.serialLines.size(), 2U);
  EXPECT_EQ(devices.options.diary, "diario");
  EXPECT_TRUE(devices.options.archive && devices.options.prompt && devices.options.waitForPaper);
}

TEST(IncludedDevicesFile, OfTheBridgeTableTheDesksOwnKeysWinAndTheOthersStay) {
  const BridgeOptions options =
      bothParsed("[bridge]\nkeep_days = 7\nprompt = false\nrole = \"SERVER\"\n", commonDesk).options;
  EXPECT_EQ(options.diary, "diario");
  EXPECT_EQ(options.keepDays, 7);
  EXPECT_TRUE(options.archive);
  EXPECT_FALSE(options.prompt);
  EXPECT_EQ(options.role, "SERVER");
}

TEST(IncludedDevicesFile, APrinterOfTheSameNameIsTheCommonOneWithTheDesksKeys) {
  const DevicesFile devices = bothParsed("[[printer]]\nname = \"Ricevute\"\nport = \"COM7:\"\n", commonDesk);
  ASSERT_EQ(devices.printers.size(), 2U);
  EXPECT_EQ(devices.printers[0].printer.DeviceName, "Ricevute");
  EXPECT_EQ(devices.printers[0].printer.Port, "COM7:");
  EXPECT_EQ(std::get<FolderTarget>(devices.printers[0].target).folder, "ricevute");
  EXPECT_EQ(devices.printers[1].printer.DeviceName, "Preconti");
  EXPECT_EQ(devices.printers[1].printer.Port, "LPT1:");
}

TEST(IncludedDevicesFile, TheDesksOwnPrintersComeFirstInItsOrder) {
  const DevicesFile devices =
      bothParsed(std::string(printerP) + "[[printer]]\nname = \"Preconti\"\nwait_for_paper = false\n", commonDesk);
  ASSERT_EQ(devices.printers.size(), 3U);
  EXPECT_EQ(devices.printers[0].printer.DeviceName, "P");
  EXPECT_EQ(devices.printers[1].printer.DeviceName, "Preconti");
  EXPECT_FALSE(devices.printers[1].printer.waitForPaper || devices.options.waitForPaper);
  EXPECT_EQ(devices.printers[2].printer.DeviceName, "Ricevute");
}

TEST(IncludedDevicesFile, ASerialLineOfTheSamePortIsTheDesks) {
  const DevicesFile devices = bothParsed("[[serial]]\nport = 2\ndevice = \"/dev/ttyS4\"\n", commonDesk);
  ASSERT_EQ(devices.serialLines.size(), 2U);
  EXPECT_EQ(devices.serialLines[0].port, 2);
  EXPECT_EQ(devices.serialLines[0].device, "/dev/ttyS4");
  EXPECT_EQ(devices.serialLines[1].device, "/dev/ttyUSB0");
}

TEST(IncludedDevicesFile, MistakesAreNamedInTheFileThatTheyStandIn) {
  const std::string comune = underMainFolder("comune.toml", "cassa");
  EXPECT_EQ(errorOfBoth("", "\n[bridge"), comune + ", riga 2, colonna 8: sintassi TOML non valida");
  EXPECT_EQ(errorOfBoth("[bridge", ""), "cassa/devices.toml, riga 2, colonna 8: sintassi TOML non valida");
  EXPECT_EQ(errorOfBoth("", "x = 1"), comune + ", riga 1, colonna 1: chiave sconosciuta \"x\"");
  EXPECT_EQ(errorOfBoth("", "[bridge]\nprompt = 1"),
            comune + ", riga 2, colonna 10: \"prompt\" deve essere true o false");
  EXPECT_EQ(errorOfBoth("[bridge]\nprompt = 1", commonDesk),
            "cassa/devices.toml, riga 3, colonna 10: \"prompt\" deve essere true o false");
  EXPECT_EQ(errorOfBoth("", "[printer]\nname = \"P\""),
            comune + ", riga 1, colonna 1: si scrive [[printer]], con due parentesi");
  EXPECT_EQ(errorOfBoth("", "bridge = 1"), comune + ", riga 1, colonna 10: si scrive [bridge], con una parentesi sola");
  EXPECT_EQ(errorOfBoth("[[printer]]\nname = \"Altra\"\nport = \"COM1:\"", commonDesk),
            "cassa/devices.toml, riga 2, colonna 1: manca la chiave \"target\"");
  EXPECT_EQ(errorOfBoth("", "[[printer]]\nname = \"P\"\nport = \"COM1:\"\ntarget = \"x\""),
            comune + ", riga 4, colonna 10: destinazione sconosciuta \"x\"");
}

TEST(IncludedDevicesFile, IncludesNoOther) {
  EXPECT_EQ(
      errorOfBoth("", "include = \"devices.toml\""),
      underMainFolder("comune.toml", "cassa") + ", riga 1, colonna 11: un file incluso non può includerne un altro");
}

TEST(IncludedDevicesFile, IsNamedByOneTextAtTheTop) {
  EXPECT_EQ(errorOf("include = 1"),
            "devices.toml, riga 1, colonna 11: \"include\" deve essere un testo fra virgolette");
  EXPECT_EQ(errorOf("include = \"\""), "devices.toml, riga 1, colonna 11: \"include\" non ha un valore utilizzabile");
  EXPECT_EQ(errorOf("[bridge]\ninclude = \"comune.toml\""),
            "devices.toml, riga 2, colonna 1: \"include\" si scrive in cima al file, prima delle tabelle");
}

TEST(IncludedDevicesFile, IsLookedForInTheFolderOfTheDesksOwn) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path("rete"));
  std::ofstream(folder.path("rete") / std::u8string(u8"società.toml")) << printerP;
  const std::string own = folder.write("devices.toml", "include = \"rete/società.toml\"\n");
  const auto result = readDevicesFile(own);
  ASSERT_TRUE(std::holds_alternative<DevicesFile>(result)) << std::get<DevicesFileError>(result).message;
  EXPECT_EQ(std::get<DevicesFile>(result).printers.size(), 1U);
}

TEST(IncludedDevicesFile, ThatIsMissingOrNoFileIsNamedWithTheLineThatAsksForIt) {
  const TemporaryFolder folder;
  for (const char* name : {"manca.toml", "."}) {
    const std::string own = folder.write("devices.toml", "# cassa 3\ninclude = \"" + std::string(name) + "\"\n");
    const auto result = readDevicesFile(own);
    ASSERT_TRUE(std::holds_alternative<DevicesFileError>(result));
    EXPECT_EQ(std::get<DevicesFileError>(result).message,
              own + ", riga 2, colonna 11: " + folder / name + ": il file non si può leggere");
  }
}

}  // namespace
}  // namespace tellaxis::platform
