// Tests of which part of a command line names the program.
#include "platform/processes/command_line.h"

#include <gmock/gmock.h>

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Reading = CommandReading;

TEST(CommandLine, UnquotedEachLongerPrefixUpToABlankMayBeTheProgram) {
  EXPECT_THAT(readingsOf(R"(C:\Program Files (x86)\Onda\driver.exe /s "C:\a b.txt")"),
              ElementsAre(Reading{R"(C:\Program)", R"( Files (x86)\Onda\driver.exe /s "C:\a b.txt")"},
                          Reading{R"(C:\Program Files)", R"( (x86)\Onda\driver.exe /s "C:\a b.txt")"},
                          Reading{R"(C:\Program Files (x86)\Onda\driver.exe)", R"( /s "C:\a b.txt")"},
                          Reading{R"(C:\Program Files (x86)\Onda\driver.exe /s)", R"( "C:\a b.txt")"},
                          Reading{R"(C:\Program Files (x86)\Onda\driver.exe /s "C:\a)", R"( b.txt")"},
                          Reading{R"(C:\Program Files (x86)\Onda\driver.exe /s "C:\a b.txt")", ""}));
}

TEST(CommandLine, QuotedTheQuotedPartIsTheProgram) {
  EXPECT_THAT(readingsOf(R"("C:\Access 97\msaccess.exe" /runtime "x y")"),
              ElementsAre(Reading{R"(C:\Access 97\msaccess.exe)", R"( /runtime "x y")"}));
  EXPECT_THAT(readingsOf(R"(  "C:\a b.exe"x)"), ElementsAre(Reading{R"(C:\a b.exe)", "x"}));
  EXPECT_THAT(readingsOf(R"("C:\never closed /x)"), ElementsAre(Reading{R"(C:\never closed /x)", ""}));
}

TEST(CommandLine, BlanksAndTabsInARowAreOneGapAndStayInTheArguments) {
  EXPECT_THAT(readingsOf("\t a  b\tc "),
              ElementsAre(Reading{"a", "  b\tc "}, Reading{"a  b", "\tc "}, Reading{"a  b\tc", " "}));
}

TEST(CommandLine, WithoutAProgramThereIsNothingToTry) {
  EXPECT_THAT(readingsOf(""), IsEmpty());
  EXPECT_THAT(readingsOf(" \t "), IsEmpty());
  EXPECT_THAT(readingsOf(R"("" /runtime)"), IsEmpty());
  EXPECT_THAT(readingsOf(std::string_view("a\0b", 3)), IsEmpty());
}

TEST(CommandLine, TheEndingMayBeMissingOnEitherSide) {
  EXPECT_THAT(fileNamesOf("C:\\a\\driver"), ElementsAre("C:\\a\\driver", "C:\\a\\driver.exe"));
  EXPECT_THAT(fileNamesOf("driver.EXE"), ElementsAre("driver.EXE", "driver"));
  EXPECT_THAT(fileNamesOf("Dial.bat"), ElementsAre("Dial.bat", "Dial.bat.exe"));
}

TEST(CommandLine, OnlyABareNameIsLookedUpOnTheSearchPath) {
  EXPECT_FALSE(isPath("msaccess.exe"));
  for (const char* path : {"C:\\x.exe", "x\\y", "x/y", "C:x"}) EXPECT_TRUE(isPath(path)) << path;
}

TEST(CommandLine, ABatchFileIsKnownByItsEnding) {
  EXPECT_TRUE(isBatchFile("C:\\DIAL.BAT"));
  EXPECT_FALSE(isBatchFile("C:\\Dial.bat.exe"));
  EXPECT_FALSE(isBatchFile("bat"));
}

/// Which of the files `existing` a command line finds; with its arguments.
std::string found(std::string_view commandLine, std::vector<std::string> existing) {
  const auto command = findCommand(commandLine, [&](const std::string& name) -> std::optional<std::string> {
    if (std::ranges::find(existing, name) == existing.end()) return std::nullopt;
    return name;
  });
  return command ? command->program + "|" + command->arguments : "nothing";
}

TEST(CommandLine, TheFirstReadingThatExistsWins) {
  constexpr std::string_view line = "C:\\Mia Cassa\\driver.exe /s C:\\x.txt";
  EXPECT_EQ(found(line, {"C:\\Mia Cassa\\driver.exe"}), "C:\\Mia Cassa\\driver.exe| /s C:\\x.txt");
  EXPECT_EQ(found(line, {"C:\\Mia Cassa\\driver"}), "C:\\Mia Cassa\\driver| /s C:\\x.txt");
  EXPECT_EQ(found(line, {"C:\\Mia Cassa\\driver.exe", "C:\\Mia.exe"}), "C:\\Mia.exe| Cassa\\driver.exe /s C:\\x.txt");
  EXPECT_EQ(found(line, {}), "nothing");
}

}  // namespace
}  // namespace tellaxis::platform
