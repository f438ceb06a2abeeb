// SostituisciTesto: the walk over the text.
#include "courtesy/sostituisci_testo.h"

#include <cstdint>
#include <limits>

namespace tellaxis {

std::optional<std::string> SostituisciTesto(std::string_view text, std::string_view find,
                                            std::string_view replacement) {
  constexpr std::size_t greatestPosition = std::numeric_limits<std::int16_t>::max();
  if (text.size() + 1 > greatestPosition || find.size() > greatestPosition) return std::nullopt;
  if (find.empty()) return std::string(text);
  std::string result;
  while (!text.empty()) {
    const bool found = text.starts_with(find);
    result.append(found ? replacement : text.substr(0, 1));
    text.remove_prefix(found ? find.size() : 1);
  }
  return result;
}

}  // namespace tellaxis
