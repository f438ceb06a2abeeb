// Preview: the device's own procedure runs on a copy, and leaves nothing behind.
#include "preview/preview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view settingsFile = "C:\\cassa\\_Tellaxis.ini";
constexpr std::string_view job = "C:\\cassa\\diario\\2003-03-07\\093000-000-a.txt";
constexpr std::string_view copy = "C:\\temp\\lavoro";

class PreviewTest : public testing::Test {
 protected:
  PreviewTest() {
    computer.Printer.installed = {{"SAMSUNG SRP-500", "COM3:"}, {"EPSON TM-L90 Receipt", "LPT1:"}};
    computer.files.addFolder("C:\\temp");
    setting("CORT_Active", "-1");
    setting("CORT_Printer", "OLIVETTI PRT100 NonFiscale");
    setting("CORT_COM", "COM3");
    setting("RF_Active", "-1");
    setting("RF_Stampante", "EPSON TM-L90 Receipt");
    setting("RF_Seriale", "LPT1:");
    setting("RF_File", "C:\\RF\\ricevuta.txt");
  }

  void setting(std::string_view key, std::string_view value) {
    computer.profiles.put(settingsFile, "Varie", key, value);
  }
  bool preview(Device device, std::string_view text) {
    computer.files.put(job, text);
    return printPreview(
        computer.host,
        {.mainFolder = "C:\\cassa", .device = device, .job = std::string(job), .workingAt = std::string(copy)});
  }

  fake::Computer computer;
};

TEST_F(PreviewTest, ACourtesyJobIsPrintedAndItsFileStays) {
  EXPECT_TRUE(preview(Device::courtesyPrinter, "Totale 12,50\r\n"));
  EXPECT_THAT(computer.journal.calls(), Contains(HasSubstr("Totale 12,50")));
  EXPECT_TRUE(computer.files.has(job));
  EXPECT_FALSE(computer.files.has(copy));
}

TEST_F(PreviewTest, ASlipIsPrintedFromItsCopyAndNotFromTheFileOfTheSettings) {
  computer.files.put("C:\\RF\\ricevuta.txt", "\"RR un'altra\"\r\n");
  EXPECT_TRUE(preview(Device::slipPrinter, "\"RR questa\"\r\n"));
  EXPECT_THAT(computer.journal.calls(), Contains(HasSubstr("questa")));
  EXPECT_THAT(computer.journal.calls(), testing::Not(Contains(HasSubstr("un'altra"))));
  EXPECT_TRUE(computer.files.has("C:\\RF\\ricevuta.txt"));
  EXPECT_TRUE(computer.files.has(job));
}

TEST_F(PreviewTest, WhatGoesToNoPrinterIsNotTried) {
  EXPECT_FALSE(preview(Device::fiscalPrinter, "scontrino"));
  EXPECT_FALSE(preview(Device::display, "Totale"));
  setting("CORT_Printer", "DPT-282");
  EXPECT_FALSE(preview(Device::courtesyPrinter, "N2 :riga"));
  setting("RF_Stampante", "STAMPANTE IGNOTA");
  EXPECT_FALSE(preview(Device::slipPrinter, "\"RR riga\"\r\n"));
  EXPECT_THAT(computer.journal.callsThatBegin("copy"), IsEmpty());
}

TEST_F(PreviewTest, NobodyIsToldWhatGoesWrong) {
  setting("CORT_Printer", "SAMSUNG");
  setting("CORT_COM", "9");
  preview(Device::courtesyPrinter, "Totale#0#18#1#0#N\r\n");
  EXPECT_THAT(computer.journal.callsThatBegin("message"), IsEmpty());
}

TEST_F(PreviewTest, NothingIsWrittenToTheSettings) {
  preview(Device::courtesyPrinter, "Totale\r\n");
  preview(Device::slipPrinter, "\"RR riga\"\r\n");
  EXPECT_THAT(computer.journal.callsThatBegin("write"), IsEmpty());
}

}  // namespace
}  // namespace tellaxis
