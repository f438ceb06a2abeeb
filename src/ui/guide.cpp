// Guide: looking for its file, and handing it to the browser.
#include "ui/guide.h"

#include <wx/filename.h>
#include <wx/utils.h>

#include "platform/program.h"

namespace tellaxis::ui {

namespace {

constexpr const char* places[] = {"/guida.html", "/../share/tellaxis/guida.html"};

/// An empty name where there is no guide.
wxFileName guideFile() {
  const wxString folder = wxString::FromUTF8(platform::programFolder().c_str());
  for (const char* place : places) {
    wxFileName file(folder + place);
    file.Normalize(wxPATH_NORM_DOTS);
    if (file.FileExists()) return file;
  }
  return {};
}

}  // namespace

bool guideIsThere() { return guideFile().IsOk(); }

bool showGuide() {
  const wxFileName file = guideFile();
  return file.IsOk() && wxLaunchDefaultBrowser(wxFileName::FileNameToURL(file));
}

}  // namespace tellaxis::ui
