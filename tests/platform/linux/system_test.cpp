// Tests of the services of a Linux computer put together.
#include "platform/system.h"

#include <gmock/gmock.h>

#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/printers.h"
#include "platform/profiles.h"
#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

std::unique_ptr<System> opened(const SystemOptions& options) {
  auto result = openSystem(options);
  auto* system = std::get_if<std::unique_ptr<System>>(&result);
  return system != nullptr ? std::move(*system) : nullptr;
}

std::string mainFolder(const test::TemporaryFolder& folder) {
  std::string path = folder / "";
  path.pop_back();
  return path;
}

TEST(LinuxSystem, TouchesNothingWhenItIsOpened) {
  test::TemporaryFolder folder;
  EXPECT_NE(opened({.mainFolder = mainFolder(folder)}), nullptr);
  EXPECT_TRUE(folder.names().empty());
}

TEST(LinuxSystem, ItsServicesShareDrivesAndMainFolder) {
  test::TemporaryFolder folder;
  std::filesystem::create_directories(folder.path("pos/Meridia"));
  const auto system = opened({.mainFolder = mainFolder(folder), .drives = {{'D', folder / "pos"}}});
  ASSERT_NE(system, nullptr);
  Host& host = system->host();
  EXPECT_TRUE(host.profiles.write("Varie", "Key", "value", "d:\\MERIDIA\\_Local.ini"));
  EXPECT_TRUE(host.files.exists("D:\\Meridia\\_LOCAL.INI"));
  EXPECT_EQ(host.profiles.read("VARIE", "key", "", 255, mainFolder(folder) + "\\pos\\meridia\\_local.ini"), "value");
}

TEST(LinuxSystem, TellsWhatTheDevicesFileSwitchesOn) {
  test::TemporaryFolder folder;
  EXPECT_FALSE(opened({.mainFolder = mainFolder(folder)})->options().midnight);
  folder.write("devices.toml", "[bridge]\nmidnight = true\n");
  EXPECT_TRUE(opened({.mainFolder = mainFolder(folder)})->options().midnight);
}

TEST(LinuxSystem, SaysWhichLocaleItDoesNotKnow) {
  const auto result = openSystem({.mainFolder = "/tmp", .localeName = "xx_YY"});
  const auto* error = std::get_if<SystemError>(&result);
  ASSERT_NE(error, nullptr);
  EXPECT_THAT(error->message, testing::HasSubstr("--locale xx_YY"));
}

TEST(LinuxSystem, UsesTheLocaleThatIsAskedFor) {
  const auto system = opened({.mainFolder = "/tmp", .localeName = "en_US"});
  ASSERT_NE(system, nullptr);
  EXPECT_EQ(system->host().locale.regional().trueWord, "True");
}

TEST(LinuxSystem, PrintsFailingStepsWhenAskedTo) {
  test::TemporaryFolder folder;
  testing::internal::CaptureStderr();
  for (const bool trace : {false, true}) {
    const auto system = opened({.mainFolder = mainFolder(folder), .trace = trace});
    ASSERT_NE(system, nullptr);
    EXPECT_FALSE(system->host().files.remove("C:\\none"));
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "passo fallito: remove C:\\none: non esiste\n");
}

}  // namespace
}  // namespace tellaxis::platform
