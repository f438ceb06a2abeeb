// Instance contract: one copy of the program a main folder, on the system that the tests run on.
#include "platform/instance.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/temporary_folder.h"

namespace tellaxis::test {
namespace {

struct InstanceContract : testing::Test {
  TemporaryFolder folder;

  std::string mainFolder(const std::string& name) const {
    std::filesystem::create_directories(folder.path(name));
    return folder.path(name).string();
  }
};

TEST_F(InstanceContract, ASecondCopyOnAMainFolderIsRefused) {
  const auto lock = platform::lockMainFolder(mainFolder("cassa"));
  ASSERT_NE(lock, nullptr);
  EXPECT_EQ(platform::lockMainFolder(mainFolder("cassa")), nullptr);
  EXPECT_EQ(platform::lockMainFolder(mainFolder("cassa") + "/../cassa"), nullptr);
}

TEST_F(InstanceContract, WhatRefusesASecondCopyIsTheOtherAndNoFile) {
  const auto lock = platform::lockMainFolder(mainFolder("cassa"));
  EXPECT_EQ(platform::whyUnlockable(mainFolder("cassa")), "");
}

TEST_F(InstanceContract, AnotherMainFolderIsFree) {
  const auto lock = platform::lockMainFolder(mainFolder("cassa1"));
  EXPECT_NE(platform::lockMainFolder(mainFolder("cassa2")), nullptr);
}

TEST_F(InstanceContract, AFolderIsFreeAgainWhenItsCopyEnds) {
  { EXPECT_NE(platform::lockMainFolder(mainFolder("cassa")), nullptr); }
  EXPECT_NE(platform::lockMainFolder(mainFolder("cassa")), nullptr);
}

TEST_F(InstanceContract, TheServingProcessIsKnownAndAskingDisturbsNobody) {
  const std::string cassa = mainFolder("cassa");
  EXPECT_FALSE(platform::servingProcess(cassa));
  EXPECT_TRUE(std::filesystem::is_empty(cassa)) << "asking leaves no trace";
  auto lock = platform::lockMainFolder(cassa);
  ASSERT_NE(lock, nullptr);
  EXPECT_TRUE(platform::servingProcess(cassa));
  EXPECT_FALSE(platform::servingProcess(mainFolder("cassa2")));
  lock.reset();
  EXPECT_FALSE(platform::servingProcess(cassa));
  EXPECT_NE(platform::lockMainFolder(cassa), nullptr);
}

}  // namespace
}  // namespace tellaxis::test
