// Contracts of clock, locale, desktop and printers, held by the fake and by the system that the tests run on.
#include "platform/contracts/clock_contract.h"
#include "platform/contracts/desktop_contract.h"
#include "platform/contracts/fake_computer.h"
#include "platform/contracts/locale_contract.h"
#include "platform/contracts/printers_contract.h"
#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

struct ItalianComputer : RealComputer {
  ItalianComputer() : RealComputer("", "it_IT") {}
};

struct RealDesktop : RealComputer {
  static void withoutTray() { GTEST_SKIP() << "this desktop has a tray"; }
};

struct FakeDesktop : FakeComputer {
  void withoutTray() { computer.tray.present = false; }
};

struct RealPrinters : RealComputer {
  RealPrinters()
      : RealComputer(
            "[[printer]]\nname = \"PRONTA\"\nport = \"COM3:\"\ntarget = \"folder:spool\"\nwait_for_paper = true\n"
            "[[printer]]\nname = \"STACCATA\"\nport = \"LPT1:\"\ntarget = \"escpos:non-esiste\"\n") {}
};

struct FakePrinters : FakeComputer {
  FakePrinters() {
    computer.Printer.installed = {{"PRONTA", "COM3:", true}, {"STACCATA", "LPT1:"}};
    computer.Printer.states["STACCATA"] = platform::PrinterState::offLine;
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ClockContract, FakeComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, ClockContract, RealComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, LocaleContract, FakeComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, LocaleContract, ItalianComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, DesktopContract, FakeDesktop);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, DesktopContract, RealDesktop);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PrintersContract, FakePrinters);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, PrintersContract, RealPrinters);

}  // namespace
}  // namespace tellaxis::test
