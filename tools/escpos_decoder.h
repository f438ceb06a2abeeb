// ESC/POS decoder: reads receipt-printer commands back and refuses everything that is not exactly one of those known.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::tools {

struct Decoded {
  std::vector<std::string> events;   ///< "text Totale", "bold 1", "cut" and so on
  std::optional<std::string> error;  ///< where and why reading stopped
};

/// A stream begins with the printer's reset and the choice of its code page, holds whole commands only, and leaves no
/// line of text without its end.
Decoded decodeEscPos(std::string_view bytes);

}  // namespace tellaxis::tools
