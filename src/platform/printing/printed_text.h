// Printed text: the lines that a print statement puts on paper, and the digits of a bar code.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::platform {

/// The lines of one print statement, each of which ends on paper: the text parted at CR LF, CR and LF. Tabs become
/// blanks up to the next eighth column, other control characters one blank, and bytes that code page 1252 leaves
/// undefined "?", so that no text can be a command.
std::vector<std::string> printedLines(std::string_view text);

/// The 13 digits that `text` (12 or 13 digits and blanks around them) stands for; nothing when it is anything else or
/// its check digit is wrong.
std::optional<std::string> ean13(std::string_view text);

}  // namespace tellaxis::platform
