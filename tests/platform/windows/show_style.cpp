// Show style: writes the window style that it was started with into the file named by its argument.
#include <windows.h>

#include <fstream>

int main(int count, char** words) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  GetStartupInfoW(&startup);
  if (count == 2) std::ofstream(words[1]) << ((startup.dwFlags & STARTF_USESHOWWINDOW) != 0 ? startup.wShowWindow : -1);
}
