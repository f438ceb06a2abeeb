// Window program: composition of bridge and window, and the two timers.
#include "app/window_program.h"

#include <wx/app.h>
#include <wx/modalhook.h>

#include <cstdlib>

#include "app/background_services.h"
#include "core/startup.h"
#include "core/tray_icon.h"
#include "platform/printers.h"
#include "ui/model/closed_folders.h"
#include "ui/tools/work_line.h"

namespace tellaxis {

namespace {

using namespace std::chrono_literals;

/// How often requests to stop and calls are looked for, in milliseconds.
constexpr int lookInterval = 200;

#ifdef _WIN32
constexpr bool systemHasTray = true;
#else
constexpr bool systemHasTray = false;
#endif

/// Counts the dialogs that wait for an answer.
class ModalCount : public wxModalDialogHook {
 public:
  ModalCount() { Register(); }
  int open = 0;

 protected:
  int Enter(wxDialog*) override {
    ++open;
    return wxID_NONE;
  }
  void Exit(wxDialog*) override { --open; }
};

ModalCount& modalDialogs() {
  static ModalCount count;
  return count;
}

}  // namespace

WindowProgram::WindowProgram(const WindowSurroundings& surroundings, const std::string& mainFolder, int interval)
    : surroundings_(surroundings),
      taskBar_([this](int code) { Form_MouseMove(window_->form(), code, ScaleMode::pixels, 1); }),
      host_(withDesktop()),
      bridge_(host_, surroundings.system.options()),
      devices_(*this),
      inspection_(surroundings.system.openInspection()),
      paper_(Paper::open(bridge_, devices_)),
      noted_(devices_, surroundings.activity, bridge_),
      metrics_(JobMetrics::open(bridge_, mainFolder, noted_, surroundings.activity)),
      diary_(JobDiary::open(bridge_, mainFolder, metrics_ ? metrics_->devices() : noted_, surroundings.activity)),
      polling_(bridge_, diary_     ? diary_->devices()
                        : metrics_ ? metrics_->devices()
                                   : noted_),
      window_(new ui::MainWindow(
          bridge_, surroundings.activity,
          std::make_shared<BackgroundServices>(surroundings.options, surroundings.system.options(), mainFolder),
          [this] { formEnded(); })) {
  modalDialogs();
  bridge_.paper = paper_.get();
  bridge_.stopRequested = [this] { return ended_ || surroundings_.stop.asked(); };
  boxes_.duringTick(true);
  Form_Load(bridge_, devices_, mainFolder);
  boxes_.duringTick(false);
  if (diary_) diary_->started();
  if (metrics_) metrics_->started(diary_.get());
  window_->setClosedFolders([this] { return ui::closedFolders(bridge_.settings, *inspection_); });
  window_->refresh();
  window_->Show();
  polls_.Bind(wxEVT_TIMER, [this](const wxTimerEvent&) { tick(); });
  looks_.Bind(wxEVT_TIMER, [this](const wxTimerEvent&) { lookAround(); });
  wxTheApp->Bind(wxEVT_QUERY_END_SESSION, [](const wxCloseEvent&) {});
  wxTheApp->Bind(wxEVT_END_SESSION, [this](const wxCloseEvent&) {
    if (!ended_) window_->form().Unload();
  });
  polls_.Start(interval);
  looks_.Start(lookInterval);
  if (surroundings.system.options().prompt)
    notices_ = surroundings.system.openJobNotices([this] { wxTheApp->CallAfter([this] { tickNow(); }); });
  bridge_.notices = notices_.get();
}

platform::Host WindowProgram::withDesktop() {
  const platform::Host& host = surroundings_.system.host();
  return host.with(host.clock, boxes_, systemHasTray ? host.tray : taskBar_);
}

void WindowProgram::Devices::IconaAggiungi() {
  tellaxis::IconaAggiungi(program_.bridge_, program_.window_->trayIcon(), program_.window_->form());
}

void WindowProgram::tick() {
  if (ticking_ || ended_) return;
  ticking_ = true;
  boxes_.duringTick(true);
  tellaxis::tick(polling_, metrics_.get());
  boxes_.duringTick(false);
  ticking_ = false;
  if (ended_) return finish();
  window_->refreshStatus();
}

/// A job brought the next tick forward; a whole interval follows.
void WindowProgram::tickNow() {
  if (ended_) return;
  polls_.Start();
  tick();
}

void WindowProgram::lookAround() {
  if (!ended_) host_.tray.keep();
  if (surroundings_.stop.asked()) {
    const bool answered = boxes_.answerAll();
    if (!ticking_ && !answered) window_->form().Unload();
    return;
  }
  if (surroundings_.calls != nullptr && surroundings_.calls->called()) window_->form().Show();
}

void WindowProgram::formEnded() {
  ended_ = true;
  polls_.Stop();
  looks_.Stop();
  if (!ticking_) finish();
}

void WindowProgram::finish() {
  notices_.reset();
  bridge_.notices = nullptr;
  host_.Printer.endOpenDocuments();
  if (metrics_) metrics_->end();
  wxTheApp->ExitMainLoop();
  // A dialog that nobody will answer any more would keep the program, and a server that does not answer too.
  if (modalDialogs().open == 0 && !ui::WorkLine::anyGoesOn()) return;
  diary_.reset();
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace tellaxis
