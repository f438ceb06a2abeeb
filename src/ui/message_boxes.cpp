// Message boxes: the toolkit's dialogs with Italian buttons.
#include "ui/message_boxes.h"

#include <wx/app.h>
#include <wx/generic/msgdlgg.h>

#include "ui/text.h"

namespace tellaxis::ui {

namespace {

/// A box over a window that is hidden would be hidden too.
wxWindow* visibleParent() {
  wxWindow* top = wxTheApp->GetTopWindow();
  return top != nullptr && top->IsShownOnScreen() ? top : nullptr;
}

wxString withPlainLineEnds(std::string_view text) {
  wxString lines = toWx(text);
  lines.Replace("\r\n", "\n");
  return lines;
}

}  // namespace

platform::Answer MessageBoxes::show(std::string_view text, std::string_view title, platform::Buttons buttons) {
  const bool question = buttons == platform::Buttons::yesNo;
  if (answering_) return question ? platform::Answer::no : platform::Answer::ok;
  if (ticking_ && !question) {
    notify(withPlainLineEnds(text), toWx(title));
    return platform::Answer::ok;
  }
  const long style = question ? wxYES_NO | wxICON_QUESTION : wxOK | wxICON_INFORMATION;
  wxGenericMessageDialog box(visibleParent(), withPlainLineEnds(text), toWx(title), style | wxCENTRE);
  if (question)
    box.SetYesNoLabels(fromUtf8("&Sì"), "&No");
  else
    box.SetOKLabel("&OK");
  open_.push_back(&box);
  const int answer = box.ShowModal();
  open_.pop_back();
  if (!question) return platform::Answer::ok;
  return answer == wxID_YES ? platform::Answer::yes : platform::Answer::no;
}

void MessageBoxes::notify(const wxString& text, const wxString& title) {
  std::erase_if(notices_, [](const auto& notice) { return !notice; });
  for (const auto& notice : notices_)
    if (notice->says(text, title)) return notice->raisedAgain();
  notices_.emplace_back(new NoticeWindow(text, title));
}

void MessageBoxes::processEvents() { wxTheApp->Yield(true); }

bool MessageBoxes::answerAll() {
  answering_ = true;
  for (wxDialog* box : open_)
    if (box->IsModal()) box->EndModal(wxID_NO);
  return !open_.empty();
}

}  // namespace tellaxis::ui
