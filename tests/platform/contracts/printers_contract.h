// Printers contract: what every implementation of printers.h owes those who ask for a printer's state.
#pragma once

#include <gtest/gtest.h>

#include "platform/host.h"
#include "platform/printers.h"

namespace tellaxis::test {

/// A Computer has host(), failures(), and two printers: "PRONTA", whose jobs wait for paper, and "STACCATA", which is
/// unplugged.
template <class Computer>
struct PrintersContract : testing::Test {
  Computer computer;
  platform::PrinterObject& printer = computer.host().Printer;
};

TYPED_TEST_SUITE_P(PrintersContract);

TYPED_TEST_P(PrintersContract, APrinterSaysItsState) {
  EXPECT_EQ(this->printer.state("PRONTA"), platform::PrinterState::ready);
  EXPECT_EQ(this->printer.state("STACCATA"), platform::PrinterState::offLine);
}

TYPED_TEST_P(PrintersContract, OfAPrinterThatIsNotThereNothingIsKnown) {
  EXPECT_EQ(this->printer.state("NESSUNA"), platform::PrinterState::unknown);
  EXPECT_EQ(this->printer.state(""), platform::PrinterState::unknown);
  EXPECT_EQ(this->printer.state("pronta"), platform::PrinterState::unknown);
}

TYPED_TEST_P(PrintersContract, AskingChoosesNoPrinterAndIsNoFailingStep) {
  EXPECT_TRUE(this->printer.select(*platform::findPrinterNamed(this->printer, "STACCATA").index));
  this->printer.state("PRONTA");
  this->printer.state("STACCATA");
  EXPECT_EQ(this->printer.DeviceName(), "STACCATA");
  EXPECT_EQ(this->computer.failures(), 0);
}

TYPED_TEST_P(PrintersContract, TheListSaysWhoseJobsWaitForPaper) {
  EXPECT_TRUE(platform::findPrinterNamed(this->printer, "PRONTA").printer.waitForPaper);
  EXPECT_FALSE(platform::findPrinterNamed(this->printer, "STACCATA").printer.waitForPaper);
}

REGISTER_TYPED_TEST_SUITE_P(PrintersContract, APrinterSaysItsState, OfAPrinterThatIsNotThereNothingIsKnown,
                            AskingChoosesNoPrinterAndIsNoFailingStep, TheListSaysWhoseJobsWaitForPaper);

}  // namespace tellaxis::test
