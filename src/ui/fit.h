// Fit: a small window as large as what is in it.
#pragma once

#include <wx/frame.h>
#include <wx/sizer.h>

namespace tellaxis::ui {

/// Fits a frame to its panel, and once more when it is shown: only then does the toolkit measure labels in their final
/// font.
inline void fitToPanel(wxFrame& frame, wxWindow& panel) {
  const auto fit = [&frame, &panel] {
    for (wxWindow* child : panel.GetChildren()) child->InvalidateBestSize();
    panel.GetSizer()->Layout();
    panel.GetSizer()->SetSizeHints(&panel);
    frame.Fit();
  };
  fit();
  frame.Bind(wxEVT_SHOW, [&frame, fit](wxShowEvent& event) {
    if (event.IsShown()) frame.CallAfter(fit);
    event.Skip();
  });
}

}  // namespace tellaxis::ui
