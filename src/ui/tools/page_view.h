// Page view: the pages of a job as paper would show them, one below the other.
#pragma once

#include <wx/scrolwin.h>

#include <string>
#include <vector>

namespace tellaxis::ui {

class PageView : public wxScrolledWindow {
 public:
  explicit PageView(wxWindow* parent);

  /// Shows the pages, each the bytes of a picture file, as wide as there is room; one that cannot be read is left out.
  /// False where none can be shown.
  bool show(const std::vector<std::string>& pages);
};

}  // namespace tellaxis::ui
