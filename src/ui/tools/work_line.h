// Work line: runs what takes its time on a thread of its own, shows that it goes on, and says what came of it.
#pragma once

#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/timer.h>

#include <functional>
#include <memory>

namespace tellaxis::ui {

/// The window's own thread never waits, so that polling goes on. Where the line's window is closed meanwhile, the work
/// goes on to its end and its result is dropped.
class WorkLine : public wxPanel {
 public:
  /// `busyChanged` is called when work begins and after it ended.
  WorkLine(wxWindow* parent, std::function<void()> busyChanged);

  bool isBusy() const { return busy_; }
  void say(const wxString& text);

  /// Runs `work` on its thread, then `done` with what it returned on the window's. Where `work` throws, its words are
  /// said instead. Only while nothing goes on.
  template <typename Result>
  void start(const wxString& doing, std::function<Result()> work, std::function<void(Result&)> done) {
    const auto result = std::make_shared<Result>();
    run(
        doing, [work = std::move(work), result] { *result = work(); },
        [done = std::move(done), result] { done(*result); });
  }

  /// Whether any line's work is not done yet, whose window may be closed.
  static bool anyGoesOn();

 private:
  void run(const wxString& doing, std::function<void()> work, std::function<void()> done);
  void ended(const wxString& failure, const std::function<void()>& done);

  std::function<void()> busyChanged_;
  wxStaticText* text_;
  wxGauge* gauge_;
  wxTimer pulse_;
  bool busy_ = false;
  std::shared_ptr<WorkLine*> alive_ = std::make_shared<WorkLine*>(this);
};

}  // namespace tellaxis::ui
