// Page view: pictures in a column.
#include "ui/tools/page_view.h"

#include <wx/image.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>

#include <algorithm>

#include "ui/native.h"
#include "ui/text.h"

namespace tellaxis::ui {

namespace {

constexpr int scrollStep = 10;
/// What the paper lies on.
const wxColour desk(0xC4, 0xC4, 0xC4);

/// Longer pictures are cut: the windowing system has none of more than 32,767 rows.
constexpr int mostRows = 12'000;

wxBitmap fitted(const wxImage& page, int width) {
  wxImage picture = page;
  if (picture.GetWidth() > width)
    picture.Rescale(width, std::max(1, picture.GetHeight() * width / picture.GetWidth()), wxIMAGE_QUALITY_HIGH);
  if (picture.GetHeight() > mostRows) picture.Resize(wxSize(picture.GetWidth(), mostRows), wxPoint(0, 0));
  return wxBitmap(picture);
}

}  // namespace

PageView::PageView(wxWindow* parent)
    : wxScrolledWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL | wxBORDER_THEME) {
  SetScrollRate(0, FromDIP(scrollStep));
  SetBackgroundColour(desk);
  SetSizer(new wxBoxSizer(wxVERTICAL));
  setAccessible(*this, "Anteprima", "La pagina come esce dalla stampante");
}

bool PageView::show(const std::vector<std::string>& pages) {
  const int gap = FromDIP(6);
  const int room = GetClientSize().x - 2 * gap - wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, this);
  GetSizer()->Clear(true);
  bool any = false;
  for (const std::string& bytes : pages) {
    const wxImage page = pageImage(bytes);
    if (!page.IsOk()) continue;
    auto* picture = new wxStaticBitmap(this, wxID_ANY, fitted(page, std::max(room, 1)));
    setAccessible(*picture, "Pagina", "La pagina come esce dalla stampante");
    GetSizer()->Add(picture, wxSizerFlags().CenterHorizontal().Border(wxALL, gap));
    any = true;
  }
  Scroll(0, 0);
  FitInside();
  Layout();
  return any;
}

}  // namespace tellaxis::ui
