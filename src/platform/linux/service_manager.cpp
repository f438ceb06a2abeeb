// Service manager: systemd, where the environment says that it started us and listens.
#include "platform/service_manager.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/console/trace.h"
#include "platform/linux/kernel/loaded_library.h"
#include "platform/linux/systemd/systemd_library.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Often enough for any patience that a unit is given, and no burden for an idle program.
constexpr milliseconds usualSignInterval{30'000};
/// Of the longest silence, so that one sign may come late or get lost.
constexpr int signsWithinPatience = 4;

class Systemd : public ServiceManager {
 public:
  explicit Systemd(const SystemdLibrary& library)
      : library_(library), patience_(std::chrono::duration_cast<milliseconds>(library.watchdog())) {}

  void ready() override {
    library_.notify("READY=1");
    lastSign_ = steady_clock::now();
  }

  void status(std::string_view line) override { library_.notify(("STATUS=" + utf8FromCodePage(line)).c_str()); }

  void alive() override {
    if (patience_ == milliseconds(0)) return;
    const auto now = steady_clock::now();
    if (now - lastSign_ < signInterval()) return;
    library_.notify("WATCHDOG=1");
    lastSign_ = now;
  }

  milliseconds signInterval() const override {
    if (patience_ == milliseconds(0)) return usualSignInterval;
    return std::min(usualSignInterval, std::max(milliseconds(1), patience_ / signsWithinPatience));
  }

  void stopping() override { library_.notify("STOPPING=1"); }

 private:
  const SystemdLibrary& library_;
  milliseconds patience_;
  steady_clock::time_point lastSign_ = steady_clock::now();
};

}  // namespace

std::unique_ptr<ServiceManager> openServiceManager() {
  const char* const socket = std::getenv("NOTIFY_SOCKET");
  if (socket == nullptr || *socket == '\0') return nullptr;
  // Without it the manager waits in vain for the program to be ready, and ends it: somebody has to read why.
  ErrorTrace trace;
  const auto* library = loadedLibrary<SystemdLibrary>(systemdLibraryFile, systemdLibraryEntry, trace);
  return library == nullptr ? nullptr : std::make_unique<Systemd>(*library);
}

}  // namespace tellaxis::platform
