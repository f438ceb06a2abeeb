// Event log: the one of Windows for programs, source "Tellaxis"; errors alone.
#include "platform/event_log.h"

#include <windows.h>

#include <chrono>
#include <string>
#include <utility>

#include "platform/console/repeats.h"
#include "platform/console/trace.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

/// The one message of our table, of severity "error": the text as it is. See resources/program.rc.in.
constexpr DWORD stepFailed = 0xC0000001;

std::string textOf(const FailedStep& step, int count) {
  std::string text = lineOf(step.operation, step.subject, step.reason);
  if (!step.device.empty()) text.append("\r\nPeriferica: ").append(step.device).append(", lavoro: ").append(step.job);
  if (count > 1) text.append("\r\nVolte dall'ultima annotazione: ").append(std::to_string(count));
  return text;
}

class WindowsEventLog : public EventLog {
 public:
  explicit WindowsEventLog(HANDLE source) : source_(source) {}
  ~WindowsEventLog() override { DeregisterEventSource(source_); }
  WindowsEventLog(const WindowsEventLog&) = delete;
  WindowsEventLog& operator=(const WindowsEventLog&) = delete;

  void write(const FailedStep& step) override {
    const auto count = repeats_.told(textOf(step, 1), std::chrono::steady_clock::now());
    if (!count) return;
    const std::wstring text = wide(textOf(step, *count));
    const wchar_t* texts[] = {text.c_str()};
    ReportEventW(source_, EVENTLOG_ERROR_TYPE, 0, stepFailed, nullptr, 1, 0, texts, nullptr);
  }

 private:
  HANDLE source_;
  Repeats repeats_;
};

}  // namespace

std::unique_ptr<EventLog> openErrorStreamLog() { return nullptr; }

std::unique_ptr<EventLog> openEventLog() {
  const HANDLE source = RegisterEventSourceW(nullptr, L"Tellaxis");
  return source == nullptr ? nullptr : std::make_unique<WindowsEventLog>(source);
}

}  // namespace tellaxis::platform
