// Tests of the smaller services of a Windows computer: processes, serial ports, regional settings, clock, one copy.
#include <gmock/gmock.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "platform/instance.h"
#include "platform/program.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"
#include "platform/windows/clock.h"
#include "platform/windows/kernel/native.h"
#include "platform/windows/locale.h"
#include "platform/windows/printing/pictures.h"
#include "platform/windows/processes.h"
#include "platform/windows/serial_port.h"
#include "text/regional.h"

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;

struct WindowsProcessesTest : testing::Test {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  WindowsProcesses processes{trace};

  bool runToEnd(const std::string& commandLine, WindowStyle style) {
    const ProcessId process = processes.start(commandLine, style);
    const ProcessHandle handle = processes.open(process);
    const bool ended = processes.wait(handle);
    return process != 0 && ended && processes.close(handle);
  }
};

TEST_F(WindowsProcessesTest, ABatchFileRunsWithItsArgumentsAndIsWaitedForInEveryStyle) {
  std::filesystem::create_directories(folder.path("una cartella"));
  const std::string batch = folder.write("una cartella\\Dial.bat", "echo %1 %~2>> \"%~dp0ran.txt\"\r\n");
  for (const WindowStyle style : {WindowStyle::hidden, WindowStyle::minimised, WindowStyle::minimisedWithoutFocus})
    EXPECT_TRUE(runToEnd("\"" + batch + "\" uno \"due tre\"", style));
  EXPECT_EQ(folder.read("una cartella\\ran.txt"), "uno due tre\r\nuno due tre\r\nuno due tre\r\n");
  EXPECT_THAT(trace.lines, testing::IsEmpty());
}

TEST_F(WindowsProcessesTest, TheStyleReachesTheProgramThatIsStarted) {
  const std::pair<WindowStyle, const char*> styles[] = {
      {WindowStyle::hidden, "0"}, {WindowStyle::minimised, "2"}, {WindowStyle::minimisedWithoutFocus, "7"}};
  for (const auto& [style, number] : styles) {
    EXPECT_TRUE(runToEnd("\"" SHOW_STYLE "\" \"" + (folder / "style.txt") + "\"", style));
    EXPECT_EQ(folder.read("style.txt"), number);
  }
}

TEST_F(WindowsProcessesTest, NoErrorBoxStopsUsWhileStartedProgramsKeepTheirs) {
  const UINT before = SetErrorMode(0);
  programArguments(0, nullptr);
  EXPECT_TRUE(runToEnd("\"" SHOW_STYLE "\" \"" + (folder / "style.txt") + "\" errors", WindowStyle::hidden));
  EXPECT_EQ(SetErrorMode(before), UINT{SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX});
  EXPECT_EQ(folder.read("style.txt"), "0 0");
}

TEST_F(WindowsProcessesTest, ABareNameIsLookedUpOnTheSearchPath) {
  EXPECT_TRUE(runToEnd("cmd /c echo x> \"" + (folder / "ran.txt") + "\"", WindowStyle::hidden));
  EXPECT_EQ(folder.read("ran.txt"), "x\r\n");
}

TEST_F(WindowsProcessesTest, WhatDoesNotExistIsNotStarted) {
  EXPECT_EQ(processes.start(folder / "manca.exe", WindowStyle::hidden), 0U);
  EXPECT_EQ(processes.start("mancante-del-tutto", WindowStyle::hidden), 0U);
  EXPECT_EQ(processes.start("", WindowStyle::hidden), 0U);
  EXPECT_EQ(trace.lines.size(), 3U);
}

TEST_F(WindowsProcessesTest, NoProcessAndNoHandleAreFailuresAtOnce) {
  EXPECT_EQ(processes.open(0), 0U);
  EXPECT_FALSE(processes.wait(0));
  EXPECT_FALSE(processes.close(0));
  EXPECT_EQ(trace.lines.size(), 3U);
}

TEST(WindowsSerialPortTest, AMissingLineCannotBeOpened) {
  test::TraceLog trace;
  WindowsSerialPorts ports{trace};
  const auto port = ports.create();
  EXPECT_FALSE(port->open(231, {}, {}));
  EXPECT_FALSE(port->isOpen());
  ASSERT_EQ(trace.lines.size(), 1U);
  EXPECT_TRUE(trace.lines.front().starts_with("open | COM231 | ")) << trace.lines.front();
}

TEST(WindowsSerialPortTest, AClosedLineTakesNothing) {
  test::TraceLog trace;
  WindowsSerialPorts ports{trace};
  const auto port = ports.create();
  EXPECT_FALSE(port->write("x"));
  EXPECT_FALSE(port->configure({}));
  EXPECT_FALSE(port->close());
  EXPECT_EQ(trace.lines.size(), 3U);
}

/// Not among these: ties at the fifth decimal, separators in the wrong order, and numbers at the very end of the range,
/// which Wine's conversion reads in ways of its own.
constexpr const char* currencyTexts[] = {
    "1", "9600", "12,5", "12.5", "0,12346", "0.12354", "1234567", "-7", "1.234", "1,234", "99999999999999999999",
    "",  "12a",  "1 2"};

/// The tables that Linux uses are what the system itself says of these regions.
TEST(WindowsLocaleTest, TheSystemAgreesWithTheTables) {
  for (const char* name : {"it_IT", "en_US", "de_DE"}) {
    const auto number = regionCalled(name);
    ASSERT_TRUE(number) << name;
    const RegionalSettings actual = WindowsLocale(*number).regional();
    const RegionalSettings expected = *regionalSettings(name);
    EXPECT_EQ(actual.decimalSeparator, expected.decimalSeparator) << name;
    EXPECT_EQ(actual.groupSeparator, expected.groupSeparator) << name;
    EXPECT_EQ(actual.trueWord, expected.trueWord) << name;
    EXPECT_EQ(actual.falseWord, expected.falseWord) << name;
    EXPECT_EQ(actual.weekdays, expected.weekdays) << name;
  }
  EXPECT_FALSE(regionCalled("xx_YY"));
  EXPECT_FALSE(regionCalled("it"));
}

TEST(WindowsLocaleTest, CurrencyNumbersAreReadAsTheTablesReadThem) {
  for (const char* name : {"it_IT", "en_US"}) {
    const WindowsLocale locale(*regionCalled(name));
    for (const char* text : currencyTexts)
      EXPECT_EQ(locale.currency(text), currencyFromText(text, locale.regional())) << name << ": " << text;
  }
}

TEST(WindowsClockTest, TheTimeOfDayAndTheCalendarAgree) {
  WindowsClock clock;
  const DateTime now = clock.now();
  const double seconds = clock.secondsSinceMidnight();
  EXPECT_GE(seconds, 0);
  EXPECT_LT(seconds, 86'400);
  const double minutes = now.hour * 60 + now.minute;
  EXPECT_NEAR(seconds / 60, minutes + 0.5, 1.5);
  EXPECT_GE(now.weekday, 0);
  EXPECT_LE(now.weekday, 6);
}

TEST(WindowsClockTest, SleepingTakesItsTime) {
  WindowsClock clock;
  const DWORD begun = GetTickCount();
  clock.sleep(std::chrono::milliseconds(60));
  clock.sleep(std::chrono::milliseconds(-5));
  EXPECT_GE(GetTickCount() - begun, 40U);
}

TEST(WindowsResidentTest, AMainFolderHasOneCopyHoweverItIsSpelled) {
  test::TemporaryFolder folder;
  std::filesystem::create_directories(folder.path("Cassa"));
  std::filesystem::create_directories(folder.path("Altra"));
  auto lock = lockMainFolder(folder / "Cassa");
  ASSERT_TRUE(lock);
  EXPECT_FALSE(lockMainFolder(folder / "CASSA"));
  EXPECT_FALSE(lockMainFolder(folder / "Altra\\..\\cassa"));
  EXPECT_TRUE(lockMainFolder(folder / "Altra"));
  lock.reset();
  EXPECT_TRUE(lockMainFolder(folder / "Cassa"));
}

TEST(WindowsResidentTest, NobodyAskedToStop) {
  StopRequest stop;
  const DWORD begun = GetTickCount();
  EXPECT_FALSE(stop.waitFor(std::chrono::milliseconds(60)));
  EXPECT_GE(GetTickCount() - begun, 40U);
}

TEST(WindowsNativeTest, EveryByteOfTheCodePageGoesToUnicodeAndBack) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(narrow(wide(bytes)), bytes);
  EXPECT_EQ(wide("\x80\x81"), L"\u20AC\u0081");
  EXPECT_EQ(narrow(L"\u4E00"), std::nullopt);
  EXPECT_EQ(narrowForReading(L"a\u4E00"), "a?");
}

/// A bitmap of 2 by 2 pixels with 24 bits each.
std::string smallBitmap() {
  std::string bytes("BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0\0\0\0\0\x10\0\0\0", 38);
  bytes.append(16, '\0');
  bytes.append("\0\0\xFF\0\xFF\0\0\0\xFF\0\0\xFF\xFF\xFF\0\0", 16);
  return bytes;
}

TEST(WindowsPicturesTest, ABitmapIsMeasuredAndADamagedOneIsAFailure) {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  const auto picture = readPicture(folder.write("logo.bmp", smallBitmap()), trace);
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 2);
  EXPECT_EQ(picture->height, 2);
  EXPECT_FALSE(readPicture(folder.write("vuoto.bmp", ""), trace));
  EXPECT_FALSE(readPicture(folder.write("testo.bmp", "non sono un'immagine"), trace));
  EXPECT_FALSE(readPicture(folder / "manca.bmp", trace));
  EXPECT_EQ(trace.lines.size(), 3U);
}

}  // namespace
}  // namespace tellaxis::platform
