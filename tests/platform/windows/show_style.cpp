// Show style: writes the window style that it was started with into the file named by its argument; with a second
// argument also its error mode.
#include <windows.h>

#include <fstream>

int main(int count, char** words) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  GetStartupInfoW(&startup);
  if (count < 2) return 1;
  std::ofstream answer(words[1]);
  answer << ((startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? startup.wShowWindow : -1);
  if (count > 2) answer << ' ' << SetErrorMode(0);
}
