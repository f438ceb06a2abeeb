// Line printers: filters, port names and the printer that stays.
#include "courtesy/line_printers.h"

#include "courtesy_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using fake::sweepFailingSteps;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

using Renderer = void (*)(Bridge&, std::string_view);
constexpr Renderer renderers[] = {Cort_StampaOlivetti, Cort_StampaUnipos};

const std::string blankLine = "Print  \r\n";

TEST(CortStampaOlivetti, PrintsEveryLineWithoutItsMarks) {
  CourtesyDesk desk("OLIVETTI PRT100",
                    "\xA7"
                    "DBar Centrale\r\n\r\nTo\xA7"
                    "Dtale \xA7 D\xA7"
                    "D\r\n");
  EXPECT_THAT(desk.print(Cort_StampaOlivetti), ElementsAre("Printers", "select 1", openJob, readJob,            //
                                                           "FontName FontA11", "Print Bar Centrale",            //
                                                           "FontName FontA11", "Print ",                        //
                                                           "FontName FontA11", "Print Totale \xA7 D", readJob,  //
                                                           "EndDoc", removeJob));
  EXPECT_FALSE(desk.hasJob());
}

TEST(CortStampaOlivetti, SkipsALineTooLongForItsFilter) {
  CourtesyDesk desk("OLIVETTI PRT100", "uno\r\n" + std::string(32'767, 'x') + "\r\ndue\r\n");
  EXPECT_THAT(desk.statements(Cort_StampaOlivetti), ElementsAre("FontName FontA11", "Print uno", "FontName FontA11",
                                                                "FontName FontA11", "Print due", "EndDoc"));
  EXPECT_EQ(desk.computer.trace.failures.size(), 1U);
}

TEST(CortStampaUnipos, PrintsMarkedLinesAndFeeds) {
  CourtesyDesk desk("UNIPOS",
                    "N:SCO:INI\r\nN:SCO:TXT:Bar Centrale\r\nn:sco:txt:no\r\n N:SCO:TXT:no\r\nN:SCO:TXT:\r\n\r\n");
  EXPECT_THAT(desk.print(Cort_StampaUnipos),
              ElementsAre("Printers", "select 1", openJob, readJob,                    //
                          "FontName Courier New", "FontSize 9", "Print Bar Centrale",  //
                          "FontName Courier New", "FontSize 9", "Print ", readJob,     //
                          blankLine, blankLine, blankLine, blankLine, blankLine, "EndDoc", removeJob));
  EXPECT_FALSE(desk.hasJob());
}

TEST(CortStampaUnipos, DoesNotPrintALineWithoutTheMark) {
  CourtesyDesk desk("UNIPOS", "Totale\r\nN:SCO:TXT\r\n");
  EXPECT_THAT(desk.statements(Cort_StampaUnipos),
              ElementsAre(blankLine, blankLine, blankLine, blankLine, blankLine, "EndDoc"));
}

TEST(LinePrinters, TakeAPortNumberAndAPortName) {
  const struct {
    Value setting;
    std::string_view port;
  } settings[] = {{std::string("LPT1"), "LPT1:"}, {std::string(" lpt1 "), "LPT1:"}, {std::string("LPT1"), "lpt1:"},
                  {std::string("3"), "COM3:"},    {std::string(" 3 "), "com3:"},    {Currency{30'000}, "COM3:"}};
  for (const Renderer renderer : renderers)
    for (const auto& row : settings) {
      CourtesyDesk desk("A", "");
      desk.computer.Printer.installed = {{"PDF", "FILE:"}, {"altra", "COM1:"}, {"questa", std::string(row.port)}};
      desk.bridge.settings.Cort_Com = row.setting;
      EXPECT_THAT(desk.print(renderer), Contains("select 2")) << row.port;
    }
}

TEST(LinePrinters, FindThePortInAPoolAndWithoutItsColonWhereNoneMatchesExactly) {
  for (const Renderer renderer : renderers)
    for (const std::string_view port : {"LPT2:,COM3:", "COM3:,COM4:", "COM3", "LPT2,com3"}) {
      CourtesyDesk desk("A", "");
      desk.computer.Printer.installed = {{"altra", "COM1:"}, {"vuota", ""}, {"questa", std::string(port)}};
      EXPECT_THAT(desk.print(renderer), Contains("select 2")) << port;
      desk.computer.Printer.installed.push_back({"esatta", "COM3:"});
      EXPECT_THAT(desk.print(renderer), Contains("select 3")) << port;
    }
}

TEST(LinePrinters, APortLeftEmptyIsNoPrintersPort) {
  for (const Renderer renderer : renderers) {
    CourtesyDesk desk("A", "");
    desk.computer.Printer.installed = {{"altra", "COM1:"}, {"vuota", ""}};
    desk.bridge.settings.Cort_Com = std::string();
    EXPECT_THAT(desk.print(renderer), Not(Contains("select 1")));
  }
}

TEST(LinePrinters, PrintOnTheCurrentPrinterWhereNoneHasThePort) {
  for (const Renderer renderer : renderers)
    for (const std::string_view setting : {"LPT1:", "4", ""}) {
      CourtesyDesk desk("A", "N:SCO:TXT:riga\r\n");
      desk.bridge.settings.Cort_Com = std::string(setting);
      const Calls calls = desk.print(renderer);
      EXPECT_THAT(calls, Not(Contains("select 1")));
      EXPECT_THAT(calls, Contains("EndDoc"));
      EXPECT_FALSE(desk.hasJob());
      EXPECT_TRUE(desk.computer.journal.callsThatBegin("message").empty());
    }
}

TEST(LinePrinters, TakeTheFirstPrinterOnThePort) {
  for (const Renderer renderer : renderers) {
    CourtesyDesk desk("A", "");
    desk.computer.Printer.installed.push_back({"B", "COM3:"});
    EXPECT_THAT(desk.print(renderer), Contains("select 1"));
  }
}

TEST(LinePrinters, PrintNoLinesOfAJobThatCannotBeOpened) {
  CourtesyDesk desk("A");
  desk.computer.files.erase(courtesyJob);
  EXPECT_THAT(desk.print(Cort_StampaOlivetti), ElementsAre("Printers", "select 1", openJob, "EndDoc", removeJob));
}

TEST(LinePrinters, GoOnAfterEveryFailingStep) {
  for (const Renderer renderer : renderers) {
    const auto run = [&](std::size_t failingCall) {
      CourtesyDesk desk("A", "N:SCO:TXT:uno\r\nN:SCO:TXT:due\r\n");
      return desk.print(renderer, failingCall);
    };
    const std::size_t lines = renderer == Cort_StampaUnipos ? 6 : 4;
    sweepFailingSteps(run, {{.call = "Printers", .dropped = 1},
                            {.call = openJob, .dropped = lines + 2},
                            {.call = readJob, .occurrence = 1, .dropped = lines + 1}});
  }
}

TEST(LinePrinters, PassALongJobLineByLine) {
  std::string job;
  for (int i = 0; i < 20'000; ++i) job += "N:SCO:TXT:riga " + std::to_string(i) + "\r\n";
  CourtesyDesk desk("A", job);
  const Calls prints = [&] {
    desk.print(Cort_StampaUnipos);
    return desk.computer.journal.callsThatBegin("Print riga");
  }();
  ASSERT_EQ(prints.size(), 20'000U);
  EXPECT_EQ(prints.back(), "Print riga 19999");
}

}  // namespace
}  // namespace tellaxis
