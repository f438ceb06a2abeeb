// SostituisciTesto: replacing every occurrence of a text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tellaxis {

/// `text` with every occurrence of `find`, from left to right, replaced by `replacement`; an empty `find` occurs
/// nowhere. Positions are 16-bit: nothing for a text that they cannot pass, which is one of 32767 characters or more.
std::optional<std::string> SostituisciTesto(std::string_view text, std::string_view find, std::string_view replacement);

}  // namespace tellaxis
