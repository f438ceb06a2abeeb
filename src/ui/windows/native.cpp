// Native: Windows' side.
#include "ui/native.h"

#include <wx/log.h>
#include <wx/mstream.h>

namespace tellaxis::ui {

/// Said for the whole program when it starts.
void forgoSignsOfLife() {}

bool displayIsThere() { return true; }

/// A label that comes right before its control is taken as the name; the layout makes them in this order.
void setAccessible(wxWindow& /*control*/, const wxString& /*name*/, const wxString& /*help*/) {}

/// The toolkit as it is built here reads BMP alone.
wxImage pageImage(const std::string& bytes) {
  const wxLogNull quiet;
  wxMemoryInputStream stream(bytes.data(), bytes.size());
  return wxImage(stream, wxBITMAP_TYPE_BMP);
}

std::uintptr_t windowHandle(const wxWindow& window) { return reinterpret_cast<std::uintptr_t>(window.GetHandle()); }

std::uintptr_t iconHandle(const wxIcon& icon) { return reinterpret_cast<std::uintptr_t>(icon.GetHandle()); }

}  // namespace tellaxis::ui
