// Samsung, class 500: markup fields, paper cut, logo and the job file that stays.
#include <string>

#include "courtesy/samsung.h"
#include "courtesy_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepFailingSteps;
using testing::ElementsAre;

constexpr std::string_view device = "SAMSUNG SRP-500";

Calls statementsOf(std::string_view job) {
  CourtesyDesk desk(device, job);
  return desk.statements(Cort_StampaSamsung);
}

/// What a black text line that is not bold prints.
Calls plain(const std::string& text, const std::string& font, const std::string& size) {
  return {"FontName " + font, "FontSize " + size, "ForeColor 0,0,0", "Print " + std::string(text), "FontBold false"};
}

const Calls cut = {"FontSize 9", "FontName FontControl", "Print P", "EndDoc"};

Calls operator+(Calls left, const Calls& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

TEST(CortStampaSamsung500, PrintsAWholeReceipt) {
  CourtesyDesk desk(device, "Bar Centrale#0#18#5#1#R\r\nCaff\xE8  0,80#0#9##0#\r\n#1\r\n");
  EXPECT_THAT(desk.print(Cort_StampaSamsung),
              ElementsAre(openJob, "Printers", "select 1",                                                   //
                          "FontSize 9", "FontName FontControl", "Print w", readJob,                          //
                          "FontName FontA15cpi", "FontSize 18", "ForeColor 255,0,0", "FontBold true",        //
                          "Print Bar Centrale", "FontBold false",                                            //
                          "FontName FontA15cpi", "FontSize 9", "ForeColor 255,0,0", "Print Caff\xE8  0,80",  //
                          "FontBold false",                                                                  //
                          "FontSize 9", "FontName FontControl", "Print P", "EndDoc", readJob));
}

TEST(CortStampaSamsung500, PrintsALargeBoldRedLine) {
  EXPECT_THAT(statementsOf("Totale#0#18#5#1#R"), ElementsAre("FontName FontA15cpi", "FontSize 18", "ForeColor 255,0,0",
                                                             "FontBold true", "Print Totale", "FontBold false"));
}

TEST(CortStampaSamsung500, PrintsSize8InTheSmallFontWhateverTheFontCode) {
  for (const std::string_view code : {"", "0", "5", "13", "x"}) {
    EXPECT_EQ(statementsOf("Totale#0#8#" + std::string(code) + "#0#N"), plain("Totale", "FontB17cpi", "9")) << code;
  }
}

TEST(CortStampaSamsung500, KeepsTheFontWhereALineEndsBehindSize8) {
  EXPECT_EQ(statementsOf("a#0#9#0\r\nb#0#8\r\nc\r\n"),
            plain("a", "FontA15cpi", "9") + plain("b", "FontA15cpi", "8") + plain("c", "FontA15cpi", "8"));
}

TEST(CortStampaSamsung500, ChoosesTheSizeByTheFontCode) {
  const struct {
    std::string_view code, size;
  } codes[] = {{"0", "9"},   {"13", "9"},  {"", "9"},    {"1", "18"},   {"5", "18"},   {"12", "18"},
               {"14", "18"}, {"-1", "18"}, {"0,9", "9"}, {"13,7", "9"}, {"1,5", "18"}, {" 13 ", "9"}};
  for (const auto& row : codes)
    EXPECT_EQ(statementsOf("x#0#18#" + std::string(row.code) + "#0"), plain("x", "FontA15cpi", std::string(row.size)))
        << row.code;
}

TEST(CortStampaSamsung500, TakesSizesByTheirText) {
  const struct {
    std::string_view field, size;
  } sizes[] = {{"9", "9"}, {"8", "8"}, {"18", "18"}, {"", "9"}, {"10", "9"}, {"x", "9"}, {" 18", "9"}};
  for (const auto& row : sizes)
    EXPECT_EQ(statementsOf("a#0#9#0\r\nb#0#" + std::string(row.field) + (row.field.empty() ? "#0" : "")),
              plain("a", "FontA15cpi", "9") + plain("b", "FontA15cpi", std::string(row.size)))
        << row.field;
}

TEST(CortStampaSamsung500, PrintsTheLetterAForAnEmptyText) {
  EXPECT_EQ(statementsOf("#0#9#0"), plain("a", "FontA15cpi", "9"));
}

TEST(CortStampaSamsung500, CutsAndEndsTheDocumentAtAnyOtherCommand) {
  for (const std::string_view command : {"1", "2", "-1", "13", "1,5"})
    EXPECT_EQ(statementsOf("#" + std::string(command)), cut) << command;
  for (const std::string_view command : {"0", "0,9", "-0,9"})
    EXPECT_EQ(statementsOf("x#" + std::string(command) + "#9#0"), plain("x", "FontA15cpi", "9")) << command;
}

TEST(CortStampaSamsung500, StartsANewDocumentBehindTheEndOfReceipt) {
  EXPECT_EQ(statementsOf("uno#0#9#0\n#1\ndue#0#9#0\n#1\n"),
            plain("uno", "FontA15cpi", "9") + cut + plain("due", "FontA15cpi", "9") + cut);
}

TEST(CortStampaSamsung500, PrintsThePreviousLineAgainForAnEmptyLine) {
  EXPECT_EQ(statementsOf("uno#0#9#0\r\n\r\n"), plain("uno", "FontA15cpi", "9") + plain("uno", "FontA15cpi", "9"));
  EXPECT_EQ(statementsOf("#1\r\n\r\n"), cut + cut);
}

TEST(CortStampaSamsung500, KeepsFontSizeBoldAndColourOnALineWithTextAlone) {
  const Calls second = {"FontName FontA15cpi", "FontSize 18", "ForeColor 255,0,0",
                        "FontBold true",       "Print due",   "FontBold false"};
  const Calls both = statementsOf("uno#0#18#1#1#R\r\ndue\r\n");
  EXPECT_EQ(Calls(both.begin() + 6, both.end()), second);
}

TEST(CortStampaSamsung500, SetsFieldsBackThatALineCarriesEmpty) {
  EXPECT_EQ(statementsOf("uno#0#18#1#1#R\r\ndue#####N\r\n"),
            (Calls{"FontName FontA15cpi", "FontSize 18", "ForeColor 255,0,0", "FontBold true", "Print uno",
                   "FontBold false"}) +
                plain("due", "FontA15cpi", "9"));
}

TEST(CortStampaSamsung500, PrintsBoldForExactlyOneAndRedForExactlyR) {
  const auto isBold = [](std::string_view field) {
    return statementsOf("x#0#9#0#" + std::string(field) + "#N").size() == 6;
  };
  for (const std::string_view field : {"1", " 1", "1,4", "0,6"}) EXPECT_TRUE(isBold(field)) << field;
  for (const std::string_view field : {"0", "2", "-1", "", "0,5"}) EXPECT_FALSE(isBold(field)) << field;
  for (const std::string_view field : {"r", "RR", " R", "N", "B"})
    EXPECT_EQ(statementsOf("x#0#9#0#0#" + std::string(field)).at(2), "ForeColor 0,0,0") << field;
}

TEST(CortStampaSamsung500, KeepsWhatAFieldHeldWhereItIsNoNumber) {
  EXPECT_EQ(statementsOf("uno#0#18#1#1#R\r\ndue#x#18#x#x#R\r\n"),
            (Calls{"FontName FontA15cpi", "FontSize 18", "ForeColor 255,0,0", "FontBold true", "Print uno",
                   "FontBold false", "FontName FontA15cpi", "FontSize 18", "ForeColor 255,0,0", "FontBold true",
                   "Print due", "FontBold false"}));
  EXPECT_EQ(statementsOf("uno#0#9#0#1#R\r\ndue#0#9#0#99999#R\r\n").at(9), "FontBold true") << "no 16-bit number";
}

TEST(CortStampaSamsung500, ReportsAFieldThatIsNoNumber) {
  CourtesyDesk desk(device, "due#x#9#0");
  desk.print(Cort_StampaSamsung);
  EXPECT_THAT(desk.computer.trace.failures, ElementsAre("lettura campo x: non \xE8 un numero"));
}

TEST(CortStampaSamsung500, IgnoresFieldsBeyondTheSixth) {
  EXPECT_EQ(statementsOf("x#0#9#0#0#N#7#8#9"), plain("x", "FontA15cpi", "9"));
}

TEST(CortStampaSamsung500, PrintsALineOfMoreFieldsThanA16BitCounterHolds) {
  EXPECT_EQ(statementsOf("x#0#9#0#0#N" + std::string(40'000, '#') + "\r\ny\r\n"),
            plain("x", "FontA15cpi", "9") + plain("y", "FontA15cpi", "9"));
}

TEST(CortStampaSamsung500, SeesNoFieldBehindTheLastSeparator) {
  EXPECT_EQ(statementsOf("uno#1\r\ndue#\r\n"), cut + cut) << "the command of the line before stays in force";
}

TEST(CortStampaSamsung500, AssignsAnEmptyFontBeforeAnyLineNamedOne) {
  EXPECT_EQ(statementsOf("solo testo"),
            (Calls{"FontName ", "FontSize 0", "ForeColor 0,0,0", "Print solo testo", "FontBold false"}));
}

TEST(CortStampaSamsung500, LeavesTheJobFile) {
  CourtesyDesk desk(device, "#1");
  desk.print(Cort_StampaSamsung);
  EXPECT_TRUE(desk.hasJob());
}

TEST(CortStampaSamsung500, IsTheClassOfADeviceNamedWithBoth500And350) {
  CourtesyDesk desk("SRP-350 (500)", "#1");
  desk.print(Cort_StampaSamsung);
  EXPECT_EQ(desk.computer.journal.callsThatBegin("Print w").size(), 1U);
  EXPECT_TRUE(desk.hasJob());
}

TEST(CortStampaSamsung500, PrintsTheLogoAsADocumentOfItsOwnBeforeAnyText) {
  CourtesyDesk desk(device, "#1\r\n");
  desk.bridge.settings.Cort_Logo = true;
  desk.computer.Printer.pictures = {{"c:\\Meridia\\LogoCassa.bmp", 384, 96}};
  EXPECT_THAT(desk.print(Cort_StampaSamsung),
              ElementsAre(openJob, "Printers", "select 1", "LoadPicture c:\\Meridia\\LogoCassa.bmp", "CurrentX = 0",
                          "CurrentY = 0", "CurrentX", "CurrentY", "PaintPicture c:\\Meridia\\LogoCassa.bmp at 0,0",
                          "EndDoc",                                                  //
                          "FontSize 9", "FontName FontControl", "Print w", readJob,  //
                          "FontSize 9", "FontName FontControl", "Print P", "EndDoc", readJob));
}

TEST(CortStampaSamsung500, PrintsTheTextAllTheSameWhereTheLogoIsMissing) {
  CourtesyDesk desk(device, "#1\r\n");
  desk.bridge.settings.Cort_Logo = true;
  EXPECT_THAT(desk.print(Cort_StampaSamsung),
              ElementsAre(openJob, "Printers", "select 1", "LoadPicture c:\\Meridia\\LogoCassa.bmp", "CurrentX = 0",
                          "CurrentY = 0", "CurrentX", "CurrentY", "EndDoc",          //
                          "FontSize 9", "FontName FontControl", "Print w", readJob,  //
                          "FontSize 9", "FontName FontControl", "Print P", "EndDoc", readJob));
}

TEST(CortStampaSamsung500, LoadsTheConfiguredLogoAlways) {
  CourtesyDesk desk(device, "");
  desk.bridge.settings.Cort_Logo = true;
  desk.bridge.settings.Cort_File = "";
  desk.print(Cort_StampaSamsung);
  EXPECT_THAT(desk.computer.journal.callsThatBegin("LoadPicture"), ElementsAre("LoadPicture "));
}

TEST(CortStampaSamsung500, SaysSoWhereNoPrinterHasThePort) {
  for (const Value& port : {Value(std::string("4")), Value(std::string("COM3")), Value(Null{})}) {
    CourtesyDesk desk(device, "x#0#9#0\r\n#1\r\n");
    desk.bridge.settings.Cort_Com = port;
    EXPECT_THAT(desk.print(Cort_StampaSamsung),
                ElementsAre(openJob, "Printers", "message Tellaxis: Stampante NON trovata"));
    EXPECT_TRUE(desk.hasJob());
  }
}

TEST(CortStampaSamsung500, ClosesTheJobFileBeforeItSaysSo) {
  CourtesyDesk desk(device, "#1");
  desk.bridge.settings.Cort_Com = std::string("4");
  bool open = true;
  desk.computer.dialogs.onShow = [&] { open = desk.jobIsOpen(); };
  desk.print(Cort_StampaSamsung);
  EXPECT_FALSE(open);
}

TEST(CortStampaSamsung500, ComparesThePortExactly) {
  CourtesyDesk desk(device, "#1");
  desk.computer.Printer.installed[1].Port = "com3:";
  EXPECT_THAT(desk.print(Cort_StampaSamsung), testing::Contains("message Tellaxis: Stampante NON trovata"));
}

TEST(CortStampaSamsung500, TakesTheFirstPrinterOnThePortAndANumberAsPort) {
  CourtesyDesk desk(device, "#1");
  desk.computer.Printer.installed.push_back({"SRP-350", "COM3:"});
  desk.bridge.settings.Cort_Com = Currency{30'000};
  EXPECT_THAT(desk.print(Cort_StampaSamsung), testing::Contains("select 1"));
}

TEST(CortStampaSamsung500, PrintsNoLinesOfAJobThatCannotBeOpened) {
  CourtesyDesk desk(device);
  desk.computer.files.erase(courtesyJob);
  EXPECT_THAT(desk.print(Cort_StampaSamsung),
              ElementsAre(openJob, "Printers", "select 1", "FontSize 9", "FontName FontControl", "Print w"));
}

TEST(CortStampaSamsung500, GoesOnAfterEveryFailingStep) {
  const auto run = [](std::size_t failingCall) {
    CourtesyDesk desk(device, "uno#0#18#1#1#R\r\n#1\r\n");
    desk.bridge.settings.Cort_Logo = true;
    desk.computer.Printer.pictures = {{"c:\\Meridia\\LogoCassa.bmp", 384, 96}};
    return desk.print(Cort_StampaSamsung, failingCall);
  };
  const Calls all = run(0);
  const auto firstRead = std::find(all.begin(), all.end(), readJob);
  ASSERT_NE(firstRead, all.end());
  const Calls beforeReading(all.begin() + 1, firstRead);
  const auto lines = static_cast<std::size_t>(all.end() - firstRead) - 1;
  sweepFailingSteps(
      run, {{.call = openJob, .dropped = all.size() - 1, .instead = beforeReading},
            {.call = "Printers", .dropped = all.size() - 2, .instead = {"message Tellaxis: Stampante NON trovata"}},
            {.call = "LoadPicture c:\\Meridia\\LogoCassa.bmp",
             .dropped = 5,
             .instead = {"CurrentX = 0", "CurrentY = 0", "CurrentX", "CurrentY"}},
            {.call = readJob, .occurrence = 1, .dropped = lines}});
}

}  // namespace
}  // namespace tellaxis
