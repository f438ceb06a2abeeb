// Work line: threads, and the way back to the window.
#include "ui/tools/work_line.h"

#include <wx/app.h>
#include <wx/sizer.h>

#include <atomic>
#include <exception>
#include <string>
#include <thread>

namespace tellaxis::ui {

namespace {

constexpr int pulseInterval = 100;  // milliseconds

std::atomic<int>& threadsUnderWay() {
  static std::atomic<int> count = 0;
  return count;
}

/// What failed, in UTF-8; empty when nothing did.
std::string failureOf(const std::function<void()>& work) {
  try {
    work();
    return {};
  } catch (const std::exception& failure) {
    return failure.what();
  }
}

}  // namespace

WorkLine::WorkLine(wxWindow* parent, std::function<void()> busyChanged)
    : wxPanel(parent), busyChanged_(std::move(busyChanged)) {
  text_ =
      new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_END);
  gauge_ = new wxGauge(this, wxID_ANY, 100, wxDefaultPosition, FromDIP(wxSize(120, -1)));
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(text_, wxSizerFlags(1).CenterVertical());
  row->Add(gauge_, wxSizerFlags().CenterVertical().ReserveSpaceEvenIfHidden());
  gauge_->Hide();
  SetSizer(row);
  pulse_.Bind(wxEVT_TIMER, [this](const wxTimerEvent&) { gauge_->Pulse(); });
}

bool WorkLine::anyGoesOn() { return threadsUnderWay() > 0; }

void WorkLine::say(const wxString& text) {
  text_->SetLabelText(text);
  text_->SetToolTip(text);
}

void WorkLine::run(const wxString& doing, std::function<void()> work, std::function<void()> done) {
  say(doing);
  busy_ = true;
  gauge_->Show();
  pulse_.Start(pulseInterval);
  busyChanged_();
  ++threadsUnderWay();
  std::thread([work = std::move(work), done = std::move(done), alive = std::weak_ptr(alive_)]() mutable {
    const std::string failure = failureOf(work);
    work = nullptr;
    wxTheApp->CallAfter([done = std::move(done), alive = std::move(alive), failure] {
      if (const auto line = alive.lock()) (*line)->ended(wxString::FromUTF8(failure.c_str()), done);
    });
    --threadsUnderWay();
  }).detach();
}

void WorkLine::ended(const wxString& failure, const std::function<void()>& done) {
  busy_ = false;
  pulse_.Stop();
  gauge_->Hide();
  say(failure);
  if (failure.empty()) done();
  busyChanged_();
}

}  // namespace tellaxis::ui
