// End copy: one request, then looking whether the main folder is free.
#include "app/commands/end_copy.h"

#include <chrono>
#include <thread>

#include "app/command_line.h"
#include "platform/instance.h"

namespace tellaxis {

namespace {

using namespace std::chrono_literals;

/// For a copy that is just starting and does not listen yet.
constexpr auto requestTimeout = 5s;

}  // namespace

int endOtherCopy(const std::string& mainFolder) {
  using std::chrono::steady_clock;
  const auto begun = steady_clock::now();
  bool asked = false;
  while (platform::lockMainFolder(mainFolder) == nullptr) {
    asked = asked || platform::requestEnd(mainFolder);
    const auto passed = steady_clock::now() - begun;
    if (passed > (asked ? std::chrono::seconds(longestEnd) : requestTimeout)) return statusNotEnded;
    std::this_thread::sleep_for(50ms);
  }
  return asked ? 0 : statusNoCopy;
}

}  // namespace tellaxis
