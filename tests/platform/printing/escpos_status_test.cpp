// Tests of the receipt printer's status: every bit of every answer, and how the questions are asked.
#include "platform/printing/escpos_status.h"

#include <gmock/gmock.h>

#include <deque>
#include <string>
#include <vector>

namespace tellaxis::platform {
namespace {

using testing::ElementsAre;

/// What every answer has besides its bits of meaning.
constexpr unsigned char fixedBits = 0x12;

PrinterState stateOf(unsigned char printer, unsigned char cause, unsigned char paper) {
  return stateFrom({static_cast<unsigned char>(fixedBits | printer), static_cast<unsigned char>(fixedBits | cause),
                    static_cast<unsigned char>(fixedBits | paper)});
}

TEST(EscPosStatus, EveryBitThatMattersIsAState) {
  const struct {
    unsigned char printer, cause, paper;
    PrinterState state;
  } rows[] = {
      {0, 0, 0, PrinterState::ready},       {0, 0x04, 0, PrinterState::coverOpen}, {0, 0x20, 0, PrinterState::noPaper},
      {0, 0x40, 0, PrinterState::error},    {0x08, 0, 0, PrinterState::offLine},   {0, 0, 0x20, PrinterState::noPaper},
      {0, 0, 0x40, PrinterState::noPaper},  {0, 0, 0x60, PrinterState::noPaper},   {0, 0, 0x04, PrinterState::paperLow},
      {0, 0, 0x08, PrinterState::paperLow}, {0, 0, 0x0C, PrinterState::paperLow},
  };
  for (const auto& row : rows)
    EXPECT_EQ(stateOf(row.printer, row.cause, row.paper), row.state)
        << +row.printer << ' ' << +row.cause << ' ' << +row.paper;
}

TEST(EscPosStatus, ADrawersSwitchAndThePaperFeedButtonAreNoState) {
  EXPECT_EQ(stateOf(0x04, 0, 0), PrinterState::ready);
  EXPECT_EQ(stateOf(0x60, 0, 0), PrinterState::ready);
  EXPECT_EQ(stateOf(0, 0x08, 0), PrinterState::ready);
}

TEST(EscPosStatus, TheCauseCountsBeforeItsConsequences) {
  EXPECT_EQ(stateOf(0x08, 0x24, 0x6C), PrinterState::coverOpen);
  EXPECT_EQ(stateOf(0x08, 0x20, 0x6C), PrinterState::noPaper);
  EXPECT_EQ(stateOf(0x08, 0x40, 0x0C), PrinterState::error);
  EXPECT_EQ(stateOf(0x08, 0, 0x0C), PrinterState::offLine);
}

/// A printer that says these bytes, the next as soon as it is listened to.
struct ScriptedPrinter {
  std::vector<std::string> questions;
  std::deque<unsigned char> says;
  std::size_t takes = 100;

  PrinterState ask() {
    return askState(
        [&](std::string_view question) {
          if (questions.size() == takes) return false;
          questions.emplace_back(question);
          return true;
        },
        [&]() -> std::optional<unsigned char> {
          if (says.empty()) return std::nullopt;
          const unsigned char byte = says.front();
          says.pop_front();
          return byte;
        });
  }
};

TEST(EscPosStatus, ThreeQuestionsAreAskedInTheirOrder) {
  ScriptedPrinter printer{.questions = {}, .says = {0x12, 0x12, 0x72}};
  EXPECT_EQ(printer.ask(), PrinterState::noPaper);
  EXPECT_THAT(printer.questions, ElementsAre("\x10\x04\x01", "\x10\x04\x02", "\x10\x04\x04"));
}

TEST(EscPosStatus, FlowControlAndWhatIsSaidUnaskedIsNoAnswer) {
  // XOFF, XON, and four bytes of automatic status with the sensors of its third byte set.
  ScriptedPrinter printer{.questions = {}, .says = {0x13, 0x11, 0x1C, 0x00, 0x6C, 0x0F, 0x12, 0x12, 0x12}};
  EXPECT_EQ(printer.ask(), PrinterState::ready);
}

TEST(EscPosStatus, APrinterThatAnswersNotAllOrTakesNoQuestionIsUnknown) {
  ScriptedPrinter silent;
  EXPECT_EQ(silent.ask(), PrinterState::unknown);
  ScriptedPrinter half{.questions = {}, .says = {0x1A, 0x32}};
  EXPECT_EQ(half.ask(), PrinterState::unknown);
  ScriptedPrinter blocked{.questions = {}, .says = {0x12, 0x12, 0x12}, .takes = 1};
  EXPECT_EQ(blocked.ask(), PrinterState::unknown);
}

TEST(PrinterStates, EveryStateHasItsWords) {
  const std::pair<PrinterState, std::string_view> words[] = {
      {PrinterState::ready, "pronta"},
      {PrinterState::noPaper, "manca la carta"},
      {PrinterState::paperLow, "la carta sta per finire"},
      {PrinterState::coverOpen, "il coperchio \xE8 aperto"},
      {PrinterState::offLine, "la stampante non \xE8 in linea"},
      {PrinterState::error, "la stampante segnala un errore"},
      {PrinterState::unknown, "stato sconosciuto"},
  };
  for (const auto& [state, italian] : words) EXPECT_EQ(wordsOf(state).italian, italian);
}

TEST(PrinterStates, APrinterThatDoesNotSayDoesNotSayNo) {
  for (const PrinterState yes : {PrinterState::ready, PrinterState::paperLow, PrinterState::unknown})
    EXPECT_FALSE(wordsOf(yes).saysNo);
  for (const PrinterState no :
       {PrinterState::noPaper, PrinterState::coverOpen, PrinterState::offLine, PrinterState::error})
    EXPECT_TRUE(wordsOf(no).saysNo);
}

}  // namespace
}  // namespace tellaxis::platform
