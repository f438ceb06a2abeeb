// Tests of document JSON: numbers as JSON writes them, whatever else sets in the program.
#include "platform/printing/document_json.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cstdlib>
#include <string>

#include "platform/temporary_folder.h"

namespace tellaxis::platform {
namespace {

TEST(DocumentJson, ANumberHasTheFewestDigitsThatTellIt) {
  EXPECT_EQ(jsonOf(Move{0.1, 2}), R"({"op":"move","x":0.1,"y":2})");
  EXPECT_EQ(jsonOf(Move{-12.75, 1.0 / 3}), R"({"op":"move","x":-12.75,"y":0.3333333333333333})");
  EXPECT_EQ(jsonOf(Move{1e-7, 1e300}), R"({"op":"move","x":1e-07,"y":1e+300})");
}

#ifndef _WIN32
/// Makes numbers of the C library have a comma, as the window's toolkit does on an Italian computer; false where that
/// cannot be had.
bool useComma(const test::TemporaryFolder& folder) {
  const std::string source =
      folder.write("comma.src", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\nEND LC_NUMERIC\n");
  // It complains of all that this locale lacks, and makes it.
  const std::string command = "localedef -c -i " + source + " " + (folder / "it_XX") + " >/dev/null 2>&1";
  if (std::system(command.c_str()) == -1) return false;
  ::setenv("LOCPATH", folder.text().c_str(), 1);
  return std::setlocale(LC_NUMERIC, "it_XX") != nullptr;
}
#else
bool useComma(const test::TemporaryFolder&) { return std::setlocale(LC_NUMERIC, "Italian_Italy.1252") != nullptr; }
#endif

TEST(DocumentJson, ALocaleThatALibrarySetsMeanwhileChangesNothing) {
  const test::TemporaryFolder folder;
  if (!useComma(folder)) GTEST_SKIP() << "no locale with a comma can be had here";
  EXPECT_EQ(std::to_string(0.5), "0,500000");
  EXPECT_EQ(jsonOf(Move{0.1, -12.75}), R"({"op":"move","x":0.1,"y":-12.75})");
  std::setlocale(LC_NUMERIC, "C");
}

}  // namespace
}  // namespace tellaxis::platform
