// Text lines: every kind of line end, files and lines longer than the buffer, and files that cannot be read.
#include "core/input/text_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A text that is handed out at most `chunk` bytes at a time.
class ChunkedText : public platform::InputFile {
 public:
  ChunkedText(std::string text, std::size_t chunk) : text_(std::move(text)), chunk_(chunk) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    const std::size_t size = std::min({buffer.size(), chunk_, text_.size() - position_});
    std::memcpy(buffer.data(), text_.data() + position_, size);
    position_ += size;
    return size;
  }

 private:
  std::string text_;
  std::size_t chunk_;
  std::size_t position_ = 0;
};

/// A text of which the first piece can be read, and then nothing more.
class BrokenText : public platform::InputFile {
 public:
  BrokenText(std::string text, int& reads) : text_(std::move(text)), reads_(reads) {}

  std::optional<std::size_t> read(std::span<char> buffer) override {
    if (++reads_ > 1) return std::nullopt;
    std::memcpy(buffer.data(), text_.data(), text_.size());
    return text_.size();
  }

 private:
  std::string text_;
  int& reads_;
};

std::vector<std::string> linesOf(TextLines& lines) {
  std::vector<std::string> all;
  while (const auto line = lines.next()) all.emplace_back(*line);
  return all;
}

std::vector<std::string> linesOf(std::string text, std::size_t chunk = 100'000) {
  TextLines lines(std::make_unique<ChunkedText>(std::move(text), chunk));
  return linesOf(lines);
}

TEST(TextLines, EndAtCrLfAtLfAndAtCr) {
  EXPECT_THAT(linesOf("uno\r\ndue\ntre\rquattro\r\n"), ElementsAre("uno", "due", "tre", "quattro"));
}

TEST(TextLines, LastLineMayHaveNoEnd) { EXPECT_THAT(linesOf("uno\r\ndue"), ElementsAre("uno", "due")); }

TEST(TextLines, EmptyLinesCount) {
  EXPECT_THAT(linesOf("\r\n\r\nuno\n\n\r\rdue\r\n\r\n"), ElementsAre("", "", "uno", "", "", "", "due", ""));
}

TEST(TextLines, LfCrIsTwoEnds) { EXPECT_THAT(linesOf("uno\n\rdue"), ElementsAre("uno", "", "due")); }

TEST(TextLines, EmptyFileHasNone) { EXPECT_THAT(linesOf(""), IsEmpty()); }

TEST(TextLines, KeepEveryOtherByte) {
  const std::string odd("\x00\x1A\x80\xA7\xFF\t ", 7);
  EXPECT_THAT(linesOf(odd + "\r\n"), ElementsAre(odd));
}

TEST(TextLines, AreTheSameHoweverTheFileIsHandedOut) {
  const std::string text = "a\r\n\r\nbc\r\rd\n\r\n\nfine";
  const auto whole = linesOf(text);
  for (std::size_t chunk = 1; chunk <= text.size(); ++chunk) EXPECT_EQ(linesOf(text, chunk), whole) << chunk;
}

TEST(TextLines, LongerThanAnyBufferAreGivenWhole) {
  const std::string longLine(1'000'000, 'x');
  EXPECT_THAT(linesOf(longLine + "\r\n" + longLine, 4'096), ElementsAre(longLine, longLine));
}

TEST(TextLines, BeyondAMegabyteLoseTheirRestAlone) {
  const std::string longest(TextLines::longest, 'x');
  EXPECT_EQ(linesOf(longest + "\r\ndue"), (std::vector<std::string>{longest, "due"}));
  EXPECT_EQ(linesOf(longest + "yyy\r\ndue"), (std::vector<std::string>{longest, "due"}));
  EXPECT_EQ(linesOf("uno\n" + longest + longest, 7777), (std::vector<std::string>{"uno", longest}));
}

TEST(TextLines, BeyondAMegabyteAreTracedOnceEach) {
  fake::Computer computer;
  const std::string tooLong(3 * TextLines::longest, 'x');
  computer.files.put("C:\\lungo.txt", tooLong + "\r\nbreve\r\n" + tooLong);
  TextLines lines(computer.host, "C:\\lungo.txt");
  EXPECT_EQ(linesOf(lines).size(), 3U);
  const std::string said = "lettura C:\\lungo.txt: riga oltre 1 MB: il resto si perde";
  EXPECT_THAT(computer.trace.failures, ElementsAre(said, said));
}

TEST(TextLines, EveryLineOfALongFileIsGiven) {
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += std::to_string(i) + "\r\n";
  const auto lines = linesOf(text, 4'096);
  ASSERT_EQ(lines.size(), 100'000U);
  EXPECT_EQ(lines.front(), "0");
  EXPECT_EQ(lines[77'777], "77777");
  EXPECT_EQ(lines.back(), "99999");
}

TEST(TextLines, OfAFileThatCannotBeOpenedAreNoneAndFailed) {
  TextLines lines(nullptr);
  EXPECT_EQ(lines.next(), std::nullopt);
  EXPECT_TRUE(lines.failed());
}

TEST(TextLines, TellTheEndFromAFailure) {
  TextLines whole(std::make_unique<ChunkedText>("uno\r\ndue", 8));
  EXPECT_THAT(linesOf(whole), ElementsAre("uno", "due"));
  EXPECT_FALSE(whole.failed());

  int reads = 0;
  TextLines broken(std::make_unique<BrokenText>("uno\r\ndue", reads));
  EXPECT_THAT(linesOf(broken), ElementsAre("uno"));
  EXPECT_TRUE(broken.failed());
  EXPECT_EQ(broken.next(), std::nullopt);
  EXPECT_EQ(reads, 2) << "a file that failed is not read again";
}

TEST(TextLines, TellWhetherTheLastLineHasAnEnd) {
  TextLines lines(std::make_unique<ChunkedText>("uno\r\ndue", 8));
  lines.next();
  EXPECT_TRUE(lines.ended());
  lines.next();
  EXPECT_FALSE(lines.ended());
}

TEST(TextLines, CloseEndsThem) {
  int reads = 0;
  TextLines lines(std::make_unique<BrokenText>("uno\r\ndue\r\n", reads));
  EXPECT_EQ(lines.next(), "uno");
  lines.close();
  EXPECT_EQ(lines.next(), std::nullopt);
  EXPECT_FALSE(lines.failed());
}

}  // namespace
}  // namespace tellaxis
