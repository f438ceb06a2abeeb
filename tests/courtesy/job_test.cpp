// Entry: every printer type and what prints it.
#include "courtesy/job.h"

#include "courtesy_desk.h"

namespace tellaxis {
namespace {

using fake::Calls;
using testing::IsEmpty;

Calls callsOf(std::string_view type) {
  CourtesyDesk desk("SAMSUNG SRP-500", "N:SCO:TXT:riga\r\n");
  desk.bridge.settings.Cort_Printer = type;
  return desk.print(Cort_StampaFile);
}

TEST(CortStampaFile, PrintsAsTheChosenTypePrints) {
  EXPECT_THAT(callsOf("OLIVETTI PRT100 NonFiscale"), testing::Contains("FontName FontA11"));
  EXPECT_THAT(callsOf("SAMSUNG"), testing::Contains("Print w"));
  EXPECT_THAT(callsOf("DPT-282"), testing::Contains("serial write COM3 \x1Bm"));
  EXPECT_THAT(callsOf("UNIPOS MERIDIA"), testing::Contains("FontName Courier New"));
}

TEST(CortStampaFile, PrintsNothingForAnyOtherType) {
  for (const std::string_view type : {"NON PRESENTE", "", "samsung", "SAMSUNG ", "DPT282", "OLIVETTI"})
    EXPECT_THAT(callsOf(type), IsEmpty()) << type;
}

std::string printerOf(std::string_view type, std::string_view port) {
  CourtesyDesk desk("SAMSUNG SRP-500");
  desk.bridge.settings.Cort_Printer = type;
  desk.bridge.settings.Cort_Com = std::string(port);
  const auto printer = courtesyPrinter(desk.bridge);
  EXPECT_THAT(desk.computer.journal.callsThatBegin("select"), IsEmpty()) << "looking chooses nothing";
  return printer ? printer->DeviceName : "";
}

TEST(CourtesyPrinter, IsTheOneOnTheConfiguredPort) {
  for (const char* type : {"OLIVETTI PRT100 NonFiscale", "SAMSUNG", "UNIPOS MERIDIA"})
    EXPECT_EQ(printerOf(type, "3"), "SAMSUNG SRP-500") << type;
}

TEST(CourtesyPrinter, WithoutOneOnThePortIsTheCurrentOneWhereTheTypePrintsOnThat) {
  EXPECT_EQ(printerOf("OLIVETTI PRT100 NonFiscale", "4"), "PDF");
  EXPECT_EQ(printerOf("UNIPOS MERIDIA", "4"), "PDF");
  EXPECT_EQ(printerOf("SAMSUNG", "4"), "");
}

TEST(CourtesyPrinter, IsNoneForASerialLineAndForTypesThatDoNotPrint) {
  for (const char* type : {"DPT-282", "NON PRESENTE", ""}) EXPECT_EQ(printerOf(type, "3"), "") << type;
}

}  // namespace
}  // namespace tellaxis
