// Tests that Linux profiles agree with the vectors.
#include "platform/linux/profiles/profile_vectors.h"

#include "platform/linux/profiles/ini_folder.h"

namespace tellaxis::platform {
namespace {

using test::ProfileVector;

class ProfileVectors : public IniFolder, public testing::WithParamInterface<ProfileVector> {};

TEST_P(ProfileVectors, GiveTheResultsAndLeaveTheBytes) {
  if (const auto initial = test::bytesFromHex(GetParam()["initial_file_hex"])) put(*initial);
  test::carryOut(GetParam(), profiles_, file_);
  const auto final = test::bytesFromHex(GetParam()["final_file_hex"]);
  EXPECT_EQ(std::filesystem::exists(file_), final.has_value());
  EXPECT_EQ(content(), final.value_or(""));
}

TEST_P(ProfileVectors, GiveTheSameInABatch) {
  if (const auto initial = test::bytesFromHex(GetParam()["initial_file_hex"])) put(*initial);
  {
    const ProfileBatch batch(profiles_);
    test::carryOut(GetParam(), profiles_, file_);
  }
  EXPECT_EQ(content(), test::bytesFromHex(GetParam()["final_file_hex"]).value_or(""));
}

INSTANTIATE_TEST_SUITE_P(Windows, ProfileVectors, testing::ValuesIn(test::profileVectors()), test::nameOf);

TEST(ProfileVectorFile, HoldsEveryCase) { EXPECT_EQ(test::profileVectors().size(), 66u); }

}  // namespace
}  // namespace tellaxis::platform
