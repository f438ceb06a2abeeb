// Status strip: each device at a glance, whether it is active and how its last job went.
#pragma once

#include <wx/panel.h>
#include <wx/stattext.h>

#include <array>

#include "core/activity.h"
#include "core/settings.h"

namespace tellaxis::ui {

class StatusStrip : public wxPanel {
 public:
  StatusStrip(wxWindow* parent, const Settings& settings, const Activity& activity);

  /// Takes two lines of cells where one would be wider than this.
  void fitWidth(int width);

  /// Shows the present state; cheap when nothing changed.
  void refresh();

 private:
  struct Cell {
    wxStaticText* mark;
    wxStaticText* state;
    wxStaticText* lastJob;
  };

  const Settings& settings_;
  const Activity& activity_;
  std::array<Cell, deviceCount> cells_;
};

}  // namespace tellaxis::ui
