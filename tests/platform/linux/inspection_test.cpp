// Inspection of Linux: lines that are free, held or refused, and rights that bind this user.
#include "platform/linux/inspection.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

#include "platform/linux/kernel/descriptor.h"
#include "platform/pseudo_terminal.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

namespace fs = std::filesystem;

struct LinuxInspectionTest : testing::Test {
  LinuxInspectionTest() { terminal.linkAs(folder / "com3"); }

  PortLook port() { return inspection.port(3, true); }

  test::TemporaryFolder folder;
  test::TraceLog trace;
  test::PseudoTerminal terminal;
  Paths paths{folder / "", {}};
  LinuxSerialPorts ports{{{3, folder / "com3"}}, trace};
  LinuxInspection inspection{paths, ports};
};

TEST_F(LinuxInspectionTest, ALineIsFreeUntilAProgramHasItOpen) {
  EXPECT_EQ(port().access, PortAccess::free);
  EXPECT_EQ(port().device, folder / "com3");
  const Descriptor opened(::open(terminal.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  EXPECT_EQ(port().access, PortAccess::held);
  EXPECT_TRUE(port().heldBy.ends_with("(" + std::to_string(::getpid()) + ")")) << port().heldBy;
}

TEST_F(LinuxInspectionTest, ALineThatWasPulledOutOrIsNoDeviceIsMissing) {
  fs::remove(folder.path("com3"));
  EXPECT_EQ(port().access, PortAccess::missing);
  folder.write("com3", "testo");
  EXPECT_EQ(port().access, PortAccess::missing);
}

TEST_F(LinuxInspectionTest, ALineThatThisUserMayNotOpenIsRefused) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may open every device";
  fs::permissions(terminal.device(), fs::perms::none);
  EXPECT_EQ(port().access, PortAccess::refused);
}

TEST_F(LinuxInspectionTest, RightsAreThoseOfThisUser) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read and write everything";
  const std::string file = folder.write("a.txt", "testo");
  fs::permissions(file, fs::perms::none);
  EXPECT_TRUE(inspection.look(file).isFile);
  EXPECT_FALSE(inspection.look(file).mayRead || inspection.look(file).mayWrite);
}

}  // namespace
}  // namespace tellaxis::platform
