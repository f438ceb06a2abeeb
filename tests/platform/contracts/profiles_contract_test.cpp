// Profiles contract, held by the fake and by the system that the tests run on.
#include "platform/contracts/profiles_contract.h"

#include "platform/contracts/fake_computer.h"
#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

struct RealDesk : RealComputer {
  std::string path(const std::string& name) const { return folder.path(name).string(); }
  std::string pathInMissingFolder() const { return (folder.path("manca") / "_Prova.ini").string(); }
};

struct FakeDesk : FakeComputer {
  FakeDesk() { computer.profiles.withoutFolder("C:\\manca"); }
  static std::string pathInMissingFolder() { return "C:\\manca\\_Prova.ini"; }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ProfilesContract, FakeDesk);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, ProfilesContract, RealDesk);

}  // namespace
}  // namespace tellaxis::test
