// Status strip: each device at a glance, whether it is active, what its jobs wait for and how its last one went.
#pragma once

#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <array>
#include <string>

#include "core/activity.h"
#include "core/bridge.h"

namespace tellaxis::ui {

class StatusStrip : public wxPanel {
 public:
  StatusStrip(wxWindow* parent, const Bridge& bridge, const Activity& activity);

  /// Takes two lines of cells where one would be wider than this.
  void fitWidth(int width);

  /// Shows the present state; cheap when nothing changed.
  void refresh();

  /// A line of its own, in code page 1252, for what concerns every device; none where it is empty.
  void warn(const std::string& text);

 private:
  struct Cell {
    wxStaticText* mark;
    wxStaticText* state;
    wxStaticText* line;
  };

  const Bridge& bridge_;
  const Activity& activity_;
  wxFlexGridSizer* grid_;
  wxStaticText* warning_;
  std::array<Cell, deviceCount> cells_;
};

}  // namespace tellaxis::ui
