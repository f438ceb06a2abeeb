// Prompt: what is watched, and waits that end early.
#include "core/prompt.h"

#include "platform/files.h"

namespace tellaxis {

bool isWhole(const Bridge& bridge, std::string_view path) {
  return bridge.notices == nullptr || bridge.notices->isWhole(path);
}

void watchJobs(const Bridge& bridge, std::vector<std::string>& watched) {
  if (bridge.notices == nullptr) return;
  const Settings& settings = bridge.settings;
  std::vector<std::string> paths;
  const auto add = [&](bool active, const std::string& path) {
    if (active && !path.empty()) paths.push_back(path);
  };
  add(settings.Display_Active, settings.Display_File);
  add(settings.MF_Active, settings.mainFolder + "\\Orbis\\");
  add(settings.MF_Active, settings.MF_File_Output);
  add(settings.RF_Active, settings.RF_File);
  add(settings.Cort_Active, settings.mainFolder + "\\CortOrbis\\");
  if (paths == watched) return;
  watched = std::move(paths);
  bridge.notices->watch(watched);
}

void waitForFile(const Bridge& bridge, std::string_view path, std::chrono::milliseconds duration) {
  using std::chrono::steady_clock;
  const auto end = steady_clock::now() + duration;
  for (auto now = steady_clock::now(); now < end; now = steady_clock::now()) {
    if (bridge.host.files.exists(path) && isWhole(bridge, path)) return;
    bridge.notices->waitFor(std::chrono::ceil<std::chrono::milliseconds>(end - now));
  }
}

}  // namespace tellaxis
