// Signs of life: waits in pieces, and the status line.
#include "app/signs_of_life.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tellaxis {

void LivingNotices::waitFor(std::chrono::milliseconds duration) {
  using std::chrono::steady_clock;
  const auto end = steady_clock::now() + duration;
  for (;;) {
    const auto begun = steady_clock::now();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - begun);
    const auto piece = std::min(left, manager_.signInterval());
    notices_->waitFor(std::max(piece, std::chrono::milliseconds(0)));
    manager_.alive();
    // A file that is whole ends the wait before the piece is over.
    if (piece == left || steady_clock::now() - begun < piece) return;
  }
}

std::string statusLine(const Settings& settings, const Activity& activity) {
  const int devices = settings.Display_Active + settings.MF_Active + settings.RF_Active + settings.Cort_Active;
  std::string line = devices == 0   ? "nessun dispositivo attivo"
                     : devices == 1 ? "1 dispositivo attivo"
                                    : std::to_string(devices) + " dispositivi attivi";
  const auto& receipt = activity.lastJob(Device::fiscalPrinter);
  if (!receipt) return line;
  std::array<char, 8> time{};
  std::snprintf(time.data(), time.size(), "%02d:%02d", receipt->ended.hour % 24, receipt->ended.minute % 60);
  return line + ", ultimo scontrino " + time.data();
}

void ServiceReport::ready() {
  told_ = statusLine(bridge_.settings, activity_);
  manager_.ready();
  manager_.status(told_);
}

void ServiceReport::goesOn(bool stopAsked) {
  manager_.alive();
  if (stopAsked && !stopping_) {
    stopping_ = true;
    manager_.stopping();
  }
  if (told_.empty()) return;
  std::string line = statusLine(bridge_.settings, activity_);
  if (line == told_) return;
  told_ = std::move(line);
  manager_.status(told_);
}

}  // namespace tellaxis
