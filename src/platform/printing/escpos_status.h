// ESC/POS status: the questions that a receipt printer answers at once, also while it cannot print, and its answers.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/printer_state.h"

namespace tellaxis::platform {

/// For all answers together; a printer that does not know the question says nothing.
inline constexpr std::chrono::milliseconds statusAnswerLimit{300};

/// DLE EOT 1, 2 and 4: printer, cause of being off line, roll of paper. Each is answered by one byte.
inline constexpr std::array<std::string_view, 3> statusQuestions = {"\x10\x04\x01", "\x10\x04\x02", "\x10\x04\x04"};

/// The answers in the order of the questions.
using StatusAnswers = std::array<unsigned char, statusQuestions.size()>;

/// True for a byte that answers a question: of its bits 0, 1, 4 and 7 the second and third are set. Flow control and
/// the status that a printer sends unasked look otherwise.
constexpr bool isStatusAnswer(unsigned char byte) { return (byte & 0x93) == 0x12; }

PrinterState stateFrom(const StatusAnswers& answers);

/// Writes bytes to the printer; false when it cannot.
using AskPrinter = std::function<bool(std::string_view bytes)>;

/// The next byte of the printer; nothing when none comes before the time is over.
using HearPrinter = std::function<std::optional<unsigned char>()>;

/// Asks one question after the other, so that no answer is taken for that to another one.
PrinterState askState(const AskPrinter& ask, const HearPrinter& hear);

}  // namespace tellaxis::platform
