// Display picture: every family's commands, split anywhere, and what is no command.
#include "display_picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace tellaxis::tools {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

std::vector<std::string> linesAfter(std::string_view bytes) {
  DisplayPicture picture;
  picture.receive(bytes);
  return picture.lines();
}

std::string padded(std::string text, std::size_t width = 20) {
  text.resize(width, ' ');
  return text;
}

TEST(DisplayPicture, IsBlankAtFirst) { EXPECT_THAT(linesAfter(""), ElementsAre(padded(""), padded(""))); }

TEST(DisplayPicture, WritesTheLinesOfEveryFamily) {
  for (const std::string_view bytes : {"\033[1;1Hsopra\033[2;1Hsotto", "\033QAsopra\r\033QBsotto\r",
                                       "\033F Asopra\r\033F Bsotto\r", "\033Asopra\r\033Bsotto\r"})
    EXPECT_THAT(linesAfter(bytes), ElementsAre(padded("sopra"), padded("sotto"))) << bytes;
}

TEST(DisplayPicture, ShowsTextWithoutACommandAsOneLineOf40) {
  EXPECT_THAT(linesAfter("Totale 12,50"), ElementsAre(padded("Totale 12,50", 40)));
}

TEST(DisplayPicture, ReplacesA40CharacterTextByTheNextOne) {
  EXPECT_THAT(linesAfter(std::string(40, 'a') + "b"), ElementsAre(padded("b", 40)));
}

TEST(DisplayPicture, ReplacesAShorterTextByTheNextOneAfterAPause) {
  DisplayPicture picture;
  picture.receive("Totale 12,50");
  picture.pause();
  picture.receive("Grazie");
  EXPECT_THAT(picture.lines(), ElementsAre(padded("Grazie", 40)));
}

TEST(DisplayPicture, UnderstandsCommandsThatComeByteByByte) {
  DisplayPicture picture;
  for (const char byte : std::string_view("\033[1;1Hsopra\033QBsotto\r\033F Auno\r\033Bdue\r"))
    picture.receive({&byte, 1});
  EXPECT_THAT(picture.lines(), ElementsAre(padded("uno"), padded("due")));
  EXPECT_EQ(picture.unknownCommands(), 0);
}

TEST(DisplayPicture, ClearsALineThatIsWrittenAnew) {
  EXPECT_THAT(linesAfter("\033QAprima riga lunga\r\033QAdopo\r"), ElementsAre(padded("dopo"), padded("")));
}

TEST(DisplayPicture, WritesOverWhatIsThereAfterAPosition) {
  EXPECT_THAT(linesAfter("\033[1;1Hprima\033[1;1Hdo\033[2;19Hxyz"),
              ElementsAre(padded("doima"), std::string(18, ' ') + "xy"));
}

TEST(DisplayPicture, DropsWhatALineHasNoRoomFor) {
  const std::string tooLong = "123456789012345678901234";
  for (const std::string& bytes : {"\033[1;1H" + tooLong, "\033QA" + tooLong + "\r", "\033A" + tooLong + "\r"})
    EXPECT_THAT(linesAfter(bytes), ElementsAre("12345678901234567890", padded(""))) << bytes;
}

TEST(DisplayPicture, DropsCommandsThatNoFamilyKnows) {
  for (const std::string_view bytes : {"\033Z", "\033QC", "\033FA", "\033[2J", "\033[3;1H", "\033[1;21H", "\033[0;1H",
                                       "\033[1;1;1H", "\033[H", "\033\033QA\r"}) {
    DisplayPicture picture;
    picture.receive("\033QAprima\r");
    picture.receive(bytes);
    EXPECT_EQ(picture.unknownCommands(), 1) << bytes.substr(1);
    EXPECT_THAT(picture.lines(), SizeIs(2));
  }
}

TEST(DisplayPicture, ShowsWhatTheBridgeSendsForEachFamily) {
  const struct {
    std::string file;
    std::vector<std::string> lines;
  } families[] = {
      {"wincor_nixdorf.bin", {"Caff\xE8 macchiato dopp", "Perch\xE9 no? \xC0\xC8\xCC\xD2\xD9 fin"}},
      {"asem.bin", {"Caff\xE8 macchiato dopp", "Perch\xE9 no? \xC0\xC8\xCC\xD2\xD9 fin"}},
      {"cd1_01.bin", {"Caff\xE8 macchiato dopp", "Perch\xE9 no? \xC0\xC8\xCC\xD2\xD9 fin"}},
      {"posline.bin", {"Caff\xE8 macchiato dop ", "Perch\xE9 no? \xC0\xC8\xCC\xD2\xD9 fin"}},
      {"kube_d.bin", {"Totale         12,50Grazie e arrived\xE9rci"}},
  };
  for (const auto& family : families) {
    std::ifstream file(TEST_DATA "/../display/data/" + family.file, std::ios::binary);
    EXPECT_EQ(linesAfter(std::string(std::istreambuf_iterator<char>(file), {})), family.lines) << family.file;
  }
}

TEST(Framed, ShowsTheLinesAsUnicodeInAFrame) {
  EXPECT_EQ(framed({"caff\xE8", "\x80 1,5"}), "┌─────┐\n│caffè│\n│€ 1,5│\n└─────┘\n");
}

}  // namespace
}  // namespace tellaxis::tools
