// Samsung, classes 350 and 103: pitch, style codes, bar code, document end and the job file that goes.
#include <string>

#include "courtesy/samsung.h"
#include "courtesy_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepFailingSteps;
using testing::ElementsAre;

constexpr std::string_view device350 = "SAMSUNG SRP-350";
constexpr std::string_view device103 = "SAMSUNG SRP-103";

Calls statementsOn(std::string_view device, std::string_view job) {
  CourtesyDesk desk(device, job);
  return desk.statements(Cort_StampaSamsung);
}

Calls operator+(Calls left, const Calls& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Calls text(const std::string& font, const std::string& size, const std::string& line) {
  return {"FontName " + font, "FontSize " + size, "Print " + line};
}

Calls barCode(const std::string& digits) {
  return {"FontSize 8.5", "FontName FontControl", "Print r",        "Print x",
          "FontSize 18",  "FontName JAN13(EAN)",  "Print " + digits};
}

Calls feed(const std::string& font) {
  return {"FontName " + font, "Print  ", "Print  ", "Print  ", "Print  ", "EndDoc"};
}

const Calls cut = {"FontSize 9.5", "FontName FontControl", "Print  ", "Print  ", "Print P", "EndDoc"};

TEST(CortStampaSamsung350, PrintsAWholeReceipt) {
  CourtesyDesk desk(device350, "Bar Centrale#0#14#1\r\nCaff\xE8#0#8#0\r\n8001234567891#0#14#13\r\n#1\r\n");
  EXPECT_THAT(desk.print(Cort_StampaSamsung),
              ElementsAre(openJob, "Printers", "select 1", readJob,                                               //
                          "FontName FontA1x1", "FontSize 14", "Print Bar Centrale",                               //
                          "FontName FontA1x1", "FontSize 10", "Print Caff\xE8",                                   //
                          "FontSize 8.5", "FontName FontControl", "Print r", "Print x",                           //
                          "FontSize 18", "FontName JAN13(EAN)", "Print 8001234567891",                            //
                          "DeviceName", "FontSize 9.5", "FontName FontControl", "Print  ", "Print  ", "Print P",  //
                          "EndDoc", readJob, removeJob));
}

TEST(CortStampaSamsung103, PrintsAWholeReceipt) {
  CourtesyDesk desk(device103, "Bar Centrale#0#14#1\r\nCaff\xE8#0#8#0\r\n8001234567891#0#14#13\r\n#1##0\r\n");
  EXPECT_THAT(desk.print(Cort_StampaSamsung),
              ElementsAre(openJob, "Printers", "select 1", readJob,                                          //
                          "DeviceName", "FontName FontB1x2", "FontSize 14", "Print Bar Centrale",            //
                          "DeviceName", "DeviceName", "FontSize 7", "Print Caff\xE8",                        //
                          "FontSize 8.5", "FontName FontControl", "Print r", "Print x",                      //
                          "FontSize 18", "FontName JAN13(EAN)", "Print 8001234567891",                       //
                          "DeviceName", "DeviceName", "FontName FontB1x1", "Print  ", "Print  ", "Print  ",  //
                          "Print  ", "EndDoc", readJob, removeJob));
}

TEST(CortStampaSamsung103, ChoosesFontsByTheStyleCode) {
  const struct {
    std::string_view code, font;
  } codes[] = {{"0", "FontB1x1"}, {"1", "FontB1x2"}, {"1,9", "FontB1x2"}, {"-0,5", "FontB1x1"}};
  for (const auto& row : codes)
    EXPECT_EQ(statementsOn(device103, "x#0#14#" + std::string(row.code)), text(std::string(row.font), "14", "x"))
        << row.code;
}

TEST(CortStampaSamsung350, ChoosesOneFontByEveryStyleCode) {
  for (const std::string_view code : {"0", "1"})
    EXPECT_EQ(statementsOn(device350, "x#0#14#" + std::string(code)), text("FontA1x1", "14", "x")) << code;
}

TEST(CortStampaSamsung103, KeepsTheFontAtAnyOtherStyleCode) {
  for (const std::string_view code : {"2", "12", "14", "-1", "x"})
    EXPECT_EQ(statementsOn(device103, "a#0#14#1\nb#0#14#" + std::string(code)),
              text("FontB1x2", "14", "a") + text("FontB1x2", "14", "b"))
        << code;
}

TEST(CortStampaSamsung103, TakesAnEmptyStyleForTheFirstCode) {
  // A field behind it makes the empty one a field; a fifth is ignored.
  EXPECT_EQ(statementsOn(device103, "a#0#14#1\nb#0#14##9"), text("FontB1x2", "14", "a") + text("FontB1x1", "14", "b"));
  EXPECT_EQ(statementsOn(device350, "b#0#14##9"), text("FontA1x1", "14", "b"));
}

TEST(CortStampaSamsung103, PrintsABarCodeBehindItsControlLetters) {
  EXPECT_EQ(statementsOn(device103, "8001234567891#0##13"), barCode("8001234567891"));
  EXPECT_EQ(statementsOn(device350, "8001234567891#0##13"), barCode("8001234567891"));
}

TEST(CortStampaSamsung103, GoesOnPrintingBarCodesUntilALineNamesAFont) {
  EXPECT_EQ(statementsOn(device103, "800#0##13\n801\nfine#0#14#0\n"),
            barCode("800") + barCode("801") + text("FontB1x1", "14", "fine"));
}

TEST(CortStampaSamsung103, SetsTheSizeAloneForSmallPrintAndTheFontWithTheNextLine) {
  const Calls small = {"FontSize 7", "Print b"};
  EXPECT_EQ(statementsOn(device103, "a#0#14#1\nb#0#8#1\nc#0#14\n"),
            text("FontB1x2", "14", "a") + small + text("FontB1x1", "14", "c"));
}

TEST(CortStampaSamsung103, ReadsThePitchAsANumber) {
  for (const std::string_view pitch : {"8", "8,0", " 8", "08"})
    EXPECT_EQ(statementsOn(device103, "b#0#" + std::string(pitch) + "#0"), (Calls{"FontSize 7", "Print b"})) << pitch;
  for (const std::string_view pitch : {"14", "", "9", "8,5", "-8"})
    EXPECT_EQ(statementsOn(device103, "b#0#" + std::string(pitch) + "#0"), text("FontB1x1", "14", "b")) << pitch;
}

TEST(CortStampaSamsung350, StoresPitchesAsWholeNumbersAndAlwaysSetsTheFont) {
  EXPECT_EQ(statementsOn(device350, "a#0#8#0\nb#0#9#0\nc#0#14\n"),
            text("FontA1x1", "10", "a") + text("FontA1x1", "14", "b") + text("FontA1x1", "14", "c"));
}

TEST(CortStampaSamsung350, AssignsSizeZeroBeforeAnyLineCarriedAPitch) {
  EXPECT_EQ(statementsOn(device350, "solo testo"), text("", "0", "solo testo"));
  EXPECT_EQ(statementsOn(device103, "solo testo"), text("", "14", "solo testo"));
}

TEST(CortStampaSamsung103, KeepsWhatAFieldHeldWhereItIsNoNumber) {
  EXPECT_EQ(statementsOn(device350, "a#0#8#0\nb#x#x#x\n"), text("FontA1x1", "10", "a") + text("FontA1x1", "10", "b"));
}

TEST(CortStampaSamsung103, PrintsAnEmptyTextAsEmpty) {
  EXPECT_EQ(statementsOn(device103, "#0#14#0"), text("FontB1x1", "14", ""));
}

TEST(CortStampaSamsung103, EndsAtExactlyCommand1AndPrintsTextAtAnyOther) {
  EXPECT_EQ(statementsOn(device103, "x#1,9#14#0"), feed("FontB1x1"));
  for (const std::string_view command : {"0", "2", "-1"}) {
    EXPECT_EQ(statementsOn(device103, "x#" + std::string(command) + "#14#0"), text("FontB1x1", "14", "x")) << command;
    EXPECT_EQ(statementsOn(device350, "x#" + std::string(command) + "#14#0"), text("FontA1x1", "14", "x")) << command;
  }
}

TEST(CortStampaSamsung103, EndsWithoutACutAndTheOther350DeviceWithOne) {
  EXPECT_EQ(statementsOn(device103, "x#0#14#0\n#1\n"), text("FontB1x1", "14", "x") + feed("FontB1x1"));
  EXPECT_EQ(statementsOn(device350, "x#0#14#0\n#1\n"), text("FontA1x1", "14", "x") + cut);
}

TEST(CortStampaSamsung103, EndsEvenAfterABarCode) {
  EXPECT_EQ(statementsOn(device103, "800#0##13\n#1\n"), barCode("800") + feed("JAN13(EAN)"));
}

TEST(CortStampaSamsung103, PrintsThePreviousLineAgainForAnEmptyLine) {
  EXPECT_EQ(statementsOn(device103, "x#0#14#0\n\n"), text("FontB1x1", "14", "x") + text("FontB1x1", "14", "x"));
}

TEST(CortStampaSamsung103, DoesNotEndTheDocumentOfAJobWithoutEndOfReceipt) {
  for (const std::string_view device : {device103, device350})
    EXPECT_THAT(statementsOn(device, "x#0#14#0\n"), testing::Not(testing::Contains("EndDoc")));
}

TEST(CortStampaSamsung103, PrintsALineOfMoreFieldsThanA16BitCounterHolds) {
  EXPECT_EQ(statementsOn(device103, "x#0#14#0" + std::string(40'000, '#') + "\ny\n"),
            text("FontB1x1", "14", "x") + text("FontB1x1", "14", "y"));
}

TEST(CortStampaSamsung103, IsTheClassOfEveryOtherDevice) {
  EXPECT_EQ(statementsOn("BIXOLON", "x#0#14#1"), text("FontB1x2", "14", "x"));
}

TEST(CortStampaSamsung103, DeletesTheJobFile) {
  for (const std::string_view device : {device103, device350}) {
    CourtesyDesk desk(device, "x#0#14#0\r\n#1\r\n");
    desk.print(Cort_StampaSamsung);
    EXPECT_FALSE(desk.hasJob()) << device;
  }
}

TEST(CortStampaSamsung103, TestsTheCurrentPrinterAfreshForItsFonts) {
  // The printer found cannot be chosen, so that a 350 device stays the current one.
  CourtesyDesk desk(device103, "a#0#14#1\nb#0#8\n#1\n");
  desk.computer.Printer.installed[0].DeviceName = "SRP-350";
  const Calls calls = desk.print(Cort_StampaSamsung, 3);
  EXPECT_THAT(calls, ElementsAre(openJob, "Printers", "select 1", readJob,                                    //
                                 "DeviceName", "FontName FontA1x1", "FontSize 14", "Print a",                 //
                                 "DeviceName", "FontSize 7", "Print b",                                       //
                                 "DeviceName", "FontSize 9.5", "FontName FontControl", "Print  ", "Print  ",  //
                                 "Print P", "EndDoc", readJob, removeJob));
}

TEST(CortStampaSamsung103, PrintsTheLogoFirst) {
  CourtesyDesk desk(device103, "#1");
  desk.bridge.settings.Cort_Logo = true;
  desk.computer.Printer.pictures = {{"c:\\Meridia\\LogoCassa.bmp", 384, 96}};
  const Calls calls = desk.print(Cort_StampaSamsung);
  EXPECT_THAT(Calls(calls.begin() + 3, calls.begin() + 11),
              ElementsAre("LoadPicture c:\\Meridia\\LogoCassa.bmp", "CurrentX = 0", "CurrentY = 0", "CurrentX",
                          "CurrentY", "PaintPicture c:\\Meridia\\LogoCassa.bmp at 0,0", "EndDoc", readJob));
}

Calls runReceipt(std::string_view device, std::size_t failingCall) {
  CourtesyDesk desk(device, "testo#0#14#1\r\npiccolo#0#8#0\r\n8001234567891#0#14#13\r\n#1##0\r\n");
  return desk.print(Cort_StampaSamsung, failingCall);
}

std::vector<fake::WhenFailed> commonExceptions(const Calls& all) {
  const std::size_t lines = all.size() - 6;
  return {{.call = openJob, .dropped = all.size() - 1, .instead = {"Printers", "select 1", removeJob}},
          {.call = "Printers", .dropped = all.size() - 2, .instead = {"message Tellaxis: Stampante NON trovata"}},
          {.call = readJob, .occurrence = 1, .dropped = lines + 2, .instead = {removeJob}}};
}

TEST(CortStampaSamsung103, GoesOnAfterEveryFailingStep) {
  sweepFailingSteps([](std::size_t k) { return runReceipt(device103, k); }, commonExceptions(runReceipt(device103, 0)));
}

TEST(CortStampaSamsung350, GoesOnAfterEveryFailingStep) {
  auto exceptions = commonExceptions(runReceipt(device350, 0));
  const Calls withoutCut = {"FontName FontA1x1", "Print  ", "Print  ", "Print  ", "Print  "};
  exceptions.push_back({.call = "DeviceName", .dropped = 5, .instead = withoutCut});
  // A printer that cannot be chosen leaves one that is no 350 device.
  const Calls all = runReceipt(device350, 0);
  Calls onTheOther(all.begin() + 3, all.end());
  const auto end = std::find(onTheOther.begin(), onTheOther.end(), "DeviceName") + 1;
  onTheOther.insert(onTheOther.erase(end, end + 5), withoutCut.begin(), withoutCut.end());
  exceptions.push_back({.call = "select 1", .dropped = all.size() - 3, .instead = onTheOther});
  sweepFailingSteps([](std::size_t k) { return runReceipt(device350, k); }, exceptions);
}

}  // namespace
}  // namespace tellaxis
