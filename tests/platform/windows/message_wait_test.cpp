// Tests of waiting that answers what is sent to the thread's windows and nothing else.
#include "platform/windows/kernel/message_wait.h"

#include <gmock/gmock.h>

#include <thread>

#include "platform/windows/clock.h"
#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {
namespace {

constexpr UINT question = WM_APP + 1;
constexpr UINT posted = WM_APP + 2;
int timers = 0;
int readPosts = 0;

LRESULT CALLBACK answer(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == question) return 42;
  if (message == WM_TIMER) ++timers;
  if (message == posted) ++readPosts;
  return DefWindowProcW(window, message, first, second);
}

TEST(WindowsMessageWait, AnswersWhatIsSentAndLetsNoTimerAndNoInputIn) {
  WNDCLASSW description = {};
  description.lpfnWndProc = answer;
  description.lpszClassName = L"Tellaxis wait test";
  RegisterClassW(&description);
  const HWND window =
      CreateWindowExW(0, description.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  SetTimer(window, 1, 10, nullptr);
  PostMessageW(window, posted, 0, 0);
  DWORD_PTR result = 0;
  std::thread asker([&] { SendMessageTimeoutW(window, question, 0, 0, SMTO_NORMAL, 20'000, &result); });
  WindowsClock().sleep(std::chrono::milliseconds(600));
  EXPECT_EQ(result, 42U);
  EXPECT_EQ(timers, 0);
  EXPECT_EQ(readPosts, 0);
  // What waited is still there.
  MSG message;
  EXPECT_TRUE(PeekMessageW(&message, window, posted, posted, PM_REMOVE));
  asker.join();
  DestroyWindow(window);
}

TEST(WindowsMessageWait, EndsWithItsHandleOrItsTime) {
  const UniqueHandle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  const DWORD begun = GetTickCount();
  EXPECT_FALSE(waitForMessages(event.get(), 60));
  EXPECT_FALSE(waitForMessages(nullptr, 60));
  EXPECT_GE(GetTickCount() - begun, 90U);
  SetEvent(event.get());
  EXPECT_TRUE(waitForMessages(event.get(), INFINITE));
}

}  // namespace
}  // namespace tellaxis::platform
