// Tests of the system's own private-profile operations: they must agree with the vectors as the Linux ones do.
#include "platform/windows/profiles.h"

#include <windows.h>

#include "platform/linux/profiles/profile_vectors.h"
#include "platform/temporary_folder.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

using test::ProfileVector;

struct WindowsProfileVectors : testing::TestWithParam<ProfileVector> {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  WindowsProfiles profiles{trace};
};

TEST_P(WindowsProfileVectors, GiveTheResultsAndLeaveTheBytes) {
  if (const auto initial = test::bytesFromHex(GetParam()["initial_file_hex"])) folder.write("_Test.ini", *initial);
  test::carryOut(GetParam(), profiles, folder / "_Test.ini");
  const auto final = test::bytesFromHex(GetParam()["final_file_hex"]);
  EXPECT_EQ(std::filesystem::exists(folder.path("_Test.ini")), final.has_value());
  EXPECT_EQ(folder.read("_Test.ini"), final.value_or(""));
}

INSTANTIATE_TEST_SUITE_P(Vectors, WindowsProfileVectors, testing::ValuesIn(test::profileVectors()), test::nameOf);

TEST(WindowsProfileFile, AMissingFolderIsAFailedWrite) {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  WindowsProfiles profiles{trace};
  EXPECT_FALSE(profiles.write("VARIE", "k", "v", folder / "manca\\_Test.ini"));
  EXPECT_EQ(trace.lines.size(), 1U);
  EXPECT_EQ(profiles.read("VARIE", "k", "DEF", 255, folder / "manca\\_Test.ini"), "DEF");
}

TEST(WindowsProfileFile, AnEmptyNameIsNoFileOfTheSystem) {
  test::TraceLog trace;
  WindowsProfiles profiles{trace};
  EXPECT_EQ(profiles.read("fonts", std::nullopt, "DEF", 255, ""), "DEF");
  EXPECT_FALSE(profiles.write("VARIE", "k", "v", ""));
}

TEST(WindowsProfileFile, AFileReplacedByAnotherProgramIsReadAnew) {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  WindowsProfiles profiles{trace};
  const std::string file = folder.write("_Test.ini", "[VARIE]\r\nk=1\r\n");
  EXPECT_EQ(profiles.read("VARIE", "k", "", 255, file), "1");
  folder.write("_Neu.ini", "[VARIE]\r\nk=2\r\n");
  std::filesystem::rename(folder.path("_Neu.ini"), folder.path("_Test.ini"));
  EXPECT_EQ(profiles.read("VARIE", "k", "", 255, file), "2");
}

/// A file that others may only read shows what would have been written.
TEST(WindowsProfileFile, WhatTheFileSaysAlreadyIsNotWritten) {
  test::TemporaryFolder folder;
  test::TraceLog trace;
  WindowsProfiles profiles{trace};
  const std::string file =
      folder.write("_Test.ini", "[Varie]\r\nUno=1\r\nPiano=\"2\"\r\nuno=3\r\n[Altra]\r\nDue=2\r\n");
  const HANDLE reader = CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  EXPECT_TRUE(profiles.write("VARIE", "UNO", "1", file));
  EXPECT_TRUE(profiles.write("Varie", "Piano", "\"2\"", file));
  EXPECT_TRUE(trace.lines.empty());
  EXPECT_FALSE(profiles.write("Varie", "Uno", "3", file)) << "the first line of a key counts";
  EXPECT_FALSE(profiles.write("Varie", "Piano", "2", file)) << "quotes are bytes";
  EXPECT_FALSE(profiles.write("Varie", "Due", "2", file));
  EXPECT_FALSE(profiles.write("Varie", "Un", "1", file));
  EXPECT_EQ(trace.lines.size(), 4U);
  CloseHandle(reader);
}

}  // namespace
}  // namespace tellaxis::platform
