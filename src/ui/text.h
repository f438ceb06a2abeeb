// Text: between the program's code page 1252 and the toolkit's strings.
#pragma once

#include <wx/string.h>

#include <string>
#include <string_view>

#include "text/code_page.h"

namespace tellaxis::ui {

inline wxString toWx(std::string_view text) { return wxString::FromUTF8(utf8FromCodePage(text).c_str()); }

/// A character that the code page lacks becomes "?".
inline std::string fromWx(const wxString& text) {
  return nearestCodePage(std::string_view(text.utf8_str().data(), text.utf8_str().length()));
}

/// Our own texts, which are UTF-8 in the source.
inline wxString fromUtf8(const char* text) { return wxString::FromUTF8(text); }

}  // namespace tellaxis::ui
