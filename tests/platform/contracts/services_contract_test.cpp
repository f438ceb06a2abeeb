// Contracts of clock, locale and desktop, held by the fake and by the system that the tests run on.
#include "platform/contracts/clock_contract.h"
#include "platform/contracts/desktop_contract.h"
#include "platform/contracts/fake_computer.h"
#include "platform/contracts/locale_contract.h"
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

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ClockContract, FakeComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, ClockContract, RealComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, LocaleContract, FakeComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, LocaleContract, ItalianComputer);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, DesktopContract, FakeDesktop);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, DesktopContract, RealDesktop);

}  // namespace
}  // namespace tellaxis::test
