// Program icon: the pictures compiled in.
#include "ui/program_icon.h"

#include <utility>

#include "ui/icons/tellaxis_16.xpm"
#include "ui/icons/tellaxis_24.xpm"
#include "ui/icons/tellaxis_32.xpm"
#include "ui/icons/tellaxis_48.xpm"

namespace tellaxis::ui {

namespace {

constexpr std::pair<int, const char* const*> pictures[] = {
    {16, tellaxis_16_xpm}, {24, tellaxis_24_xpm}, {32, tellaxis_32_xpm}, {48, tellaxis_48_xpm}};

}  // namespace

wxIcon programIcon(int size) {
  for (const auto& [width, picture] : pictures)
    if (width == size) return wxIcon(picture);
  return wxIcon(tellaxis_48_xpm);
}

wxIconBundle programIcons() {
  wxIconBundle icons;
  for (const auto& [width, picture] : pictures) icons.AddIcon(wxIcon(picture));
  return icons;
}

}  // namespace tellaxis::ui
