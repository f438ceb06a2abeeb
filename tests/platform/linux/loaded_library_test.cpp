// Libraries that are loaded when needed.
#include "platform/linux/kernel/loaded_library.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/printing/pages/page_library.h"
#include "platform/program.h"
#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

TEST(LoadedLibrary, IsTriedAgainAfterAFailure) {
  const std::filesystem::path late = programFolder() + "/libtellaxis_late.so";
  std::filesystem::remove(late);
  test::TraceLog log;
  EXPECT_EQ(loadedLibrary<PageLibrary>("libtellaxis_late.so", pageLibraryEntry, log), nullptr);
  EXPECT_EQ(log.lines.size(), 1U);

  std::filesystem::create_symlink(programFolder() + "/" + pageLibraryFile, late);
  const PageLibrary* library = loadedLibrary<PageLibrary>("libtellaxis_late.so", pageLibraryEntry, log);
  EXPECT_NE(library, nullptr);
  EXPECT_EQ(log.lines.size(), 1U);

  std::filesystem::remove(late);
  EXPECT_EQ(loadedLibrary<PageLibrary>("libtellaxis_late.so", pageLibraryEntry, log), library);
}

}  // namespace
}  // namespace tellaxis::platform
