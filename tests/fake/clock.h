// Clock: a clock that only the tests and the waits move on.
#pragma once

#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "fake/journal.h"
#include "platform/clock.h"

namespace tellaxis::fake {

class Clock : public platform::Clock {
 public:
  explicit Clock(Journal& journal) : journal_(journal) {}

  /// Sets date and time; waits move on the seconds since midnight, and the date with them.
  platform::DateTime date{.year = 2003, .month = 3, .day = 7, .weekday = 5, .hour = 9, .minute = 30};
  double seconds = 9 * 3600 + 30 * 60;

  /// Does something once the clock has moved on by so much from now.
  void after(std::chrono::milliseconds delay, std::function<void()> action) {
    events_.push_back({elapsed_ + delay, std::move(action)});
  }

  /// Called on every wait; for tests that must end an endless one.
  std::function<void()> onSleep;

  double secondsSinceMidnight() override { return seconds; }
  platform::DateTime now() override {
    date.hour = static_cast<int>(seconds) / 3600;
    date.minute = static_cast<int>(seconds) / 60 % 60;
    return date;
  }

  /// Waits move both on. The first moment is 8:30 in UTC.
  std::chrono::milliseconds sinceEpoch() override { return std::chrono::seconds(1'047'025'800) + elapsed_; }
  std::chrono::microseconds steady() override { return std::chrono::hours(5) + elapsed_; }

  void sleep(std::chrono::milliseconds duration) override {
    journal_.recordSleep(static_cast<long>(duration.count()));
    elapsed_ += duration;
    seconds = std::fmod(seconds + static_cast<double>(duration.count()) / 1000, 86'400);
    for (auto& event : std::exchange(events_, {})) {
      if (event.due <= elapsed_)
        event.action();
      else
        events_.push_back(std::move(event));
    }
    if (onSleep) onSleep();
  }

  std::chrono::milliseconds elapsed() const { return elapsed_; }

 private:
  struct Event {
    std::chrono::milliseconds due;
    std::function<void()> action;
  };

  Journal& journal_;
  std::chrono::milliseconds elapsed_{0};
  std::vector<Event> events_;
};

}  // namespace tellaxis::fake
