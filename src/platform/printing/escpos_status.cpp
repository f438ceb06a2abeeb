// ESC/POS status: what the bits of the answers say.
#include "platform/printing/escpos_status.h"

namespace tellaxis::platform {

namespace {

/// A bit, or one of several, that is set in the answer to a question.
struct StatusBit {
  std::size_t answer;  ///< index in `statusQuestions`
  unsigned char bits;
  PrinterState state;
};

constexpr std::size_t ofPrinter = 0;
constexpr std::size_t ofOffLineCause = 1;
constexpr std::size_t ofPaper = 2;

/// The first that is set counts: an open cover often lifts the paper off its sensor too, and whatever keeps the printer
/// from printing also takes it off line.
constexpr StatusBit statusBits[] = {
    {ofOffLineCause, 0x04, PrinterState::coverOpen},  // bit 2: the cover is open
    {ofPaper, 0x60, PrinterState::noPaper},           // bits 5, 6: the sensor at the end of the roll sees no paper
    {ofOffLineCause, 0x20, PrinterState::noPaper},    // bit 5: printing stopped at the end of the paper
    {ofOffLineCause, 0x40, PrinterState::error},      // bit 6: an error, such as of the cutter
    {ofPrinter, 0x08, PrinterState::offLine},         // bit 3: off line, also while paper is fed by hand
    {ofPaper, 0x0C, PrinterState::paperLow},          // bits 2, 3: the sensor near the end of the roll sees no paper
};

}  // namespace

PrinterState stateFrom(const StatusAnswers& answers) {
  for (const StatusBit& bit : statusBits)
    if ((answers[bit.answer] & bit.bits) != 0) return bit.state;
  return PrinterState::ready;
}

PrinterState askState(const AskPrinter& ask, const HearPrinter& hear) {
  StatusAnswers answers{};
  for (std::size_t i = 0; i < answers.size(); ++i) {
    if (!ask(statusQuestions[i])) return PrinterState::unknown;
    std::optional<unsigned char> byte;
    do byte = hear();
    while (byte && !isStatusAnswer(*byte));
    if (!byte) return PrinterState::unknown;
    answers[i] = *byte;
  }
  return stateFrom(answers);
}

}  // namespace tellaxis::platform
