// End session: tells the hidden window of a program what the system tells it when the user leaves: first the question,
// then the end ("end") or that another program refused it ("stay"). Prints how long the answer to that took, in
// milliseconds.
#include <windows.h>

#include <cstdio>
#include <string_view>

int main(int count, char** words) {
  const HWND window = FindWindowW(L"Tellaxis session", nullptr);
  if (count != 2 || window == nullptr) return 2;
  if (SendMessageW(window, WM_QUERYENDSESSION, 0, static_cast<LPARAM>(ENDSESSION_LOGOFF)) != TRUE) return 1;
  const DWORD begun = GetTickCount();
  SendMessageW(window, WM_ENDSESSION, std::string_view(words[1]) == "end", static_cast<LPARAM>(ENDSESSION_LOGOFF));
  std::printf("%lu\n", GetTickCount() - begun);
}
