// Window program: the bridge behind its window, from start-up to the end of the form.
#pragma once

#include <wx/timer.h>

#include <memory>
#include <string>

#include "app/connected_devices.h"
#include "app/job_diary.h"
#include "app/job_metrics.h"
#include "core/activity.h"
#include "core/bridge.h"
#include "core/paper.h"
#include "core/polling.h"
#include "platform/host.h"
#include "platform/program.h"
#include "platform/system.h"
#include "platform/window_call.h"
#include "ui/main_window.h"
#include "ui/message_boxes.h"
#include "ui/tray_icon_wx.h"

namespace tellaxis {

/// What the window needs beside the bridge; whoever made them keeps them alive.
struct WindowSurroundings {
  platform::System& system;
  const platform::SystemOptions& options;  ///< that it was opened with
  Activity& activity;
  platform::StopRequest& stop;
  platform::WindowCall* calls;  ///< of second copies; null where none can be heard
};

/// Start-up is done by the constructor, which shows the window; polling goes on as long as the toolkit's loop runs.
class WindowProgram {
 public:
  WindowProgram(const WindowSurroundings& surroundings, const std::string& mainFolder, int interval);

 private:
  /// The devices as start-up sees them: here there is an icon to add.
  class Devices : public ConnectedDevices {
   public:
    explicit Devices(WindowProgram& program) : ConnectedDevices(program.bridge_), program_(program) {}
    void IconaAggiungi() override;

   private:
    WindowProgram& program_;
  };

  /// The computer's services with the message boxes and the tray of this window.
  platform::Host withDesktop();
  void tick();
  void tickNow();
  /// Heeds a request to stop and the call of a second copy.
  void lookAround();
  /// The form is gone: as soon as the present tick is done, the program ends.
  void formEnded();
  void finish();

  WindowSurroundings surroundings_;
  ui::MessageBoxes boxes_;
  ui::TaskBarTray taskBar_;
  platform::Host host_;
  Bridge bridge_;
  Devices devices_;
  std::unique_ptr<platform::Inspection> inspection_;
  std::unique_ptr<Paper> paper_;  ///< null where no printer is to be asked
  NotedDevices noted_;
  std::unique_ptr<JobMetrics> metrics_;  ///< null where none are wanted
  std::unique_ptr<JobDiary> diary_;      ///< null where none is wanted
  Polling polling_;
  ui::MainWindow* window_;  ///< owned by the toolkit
  wxTimer polls_;
  wxTimer looks_;
  bool ticking_ = false;
  bool ended_ = false;
  std::unique_ptr<platform::JobNotices> notices_;  ///< the last member: its thread asks for ticks
};

}  // namespace tellaxis
