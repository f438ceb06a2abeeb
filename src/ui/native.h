// Native: the few things that the toolkit leaves to each system.
#pragma once

#include <wx/icon.h>
#include <wx/image.h>
#include <wx/window.h>

#include <cstdint>
#include <string>

namespace tellaxis::ui {

/// False where no window can be shown because there is no display to open.
bool displayIsThere();

/// From now on no window of the program is asked whether it still answers: a desktop that gets no answer while a job
/// waits for its driver offers to end the program, and a receipt with it. Called once, before the first window.
void forgoSignsOfLife();

/// What a screen reader says of a control whose label stands beside it: its name, and what it is for.
void setAccessible(wxWindow& control, const wxString& name, const wxString& help);

/// The picture that the bytes of a file are, of the kind that pages are drawn in here; not OK where they are none.
wxImage pageImage(const std::string& bytes);

/// The system's handles, as the tray's record wants them; 0 where the system has none.
std::uintptr_t windowHandle(const wxWindow& window);
std::uintptr_t iconHandle(const wxIcon& icon);

}  // namespace tellaxis::ui
