// Second copy: another one, or a lock that nobody can have.
#include "app/second_copy.h"

#include "platform/instance.h"

namespace tellaxis {

std::string refusalOf(const std::string& mainFolder, std::string_view otherCopy) {
  const std::string why = platform::whyUnlockable(mainFolder);
  if (!why.empty()) return "non si pu\xC3\xB2 sapere se un'altra copia serve gi\xC3\xA0 la cartella: " + why;
  return std::string(otherCopy) + " serve gi\xC3\xA0 la cartella " + mainFolder;
}

}  // namespace tellaxis
