// About window: what this program is.
#pragma once

#include <wx/frame.h>

namespace tellaxis::ui {

class AboutWindow : public wxFrame {
 public:
  AboutWindow();
};

}  // namespace tellaxis::ui
