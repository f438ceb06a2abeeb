// Note arguments: a program for tests, which adds its arguments, "|" between them, to the file PROGRAM.note as one
// line.
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

/// A first argument "wait" makes it last half a second.
int main(int count, char** words) {
  std::string line;
  for (int i = 1; i < count; ++i) line += std::string(i > 1 ? "|" : "") + words[i];
  if (line.starts_with("wait")) std::this_thread::sleep_for(std::chrono::milliseconds(500));
  std::ofstream(std::string(words[0]) + ".note", std::ios::app | std::ios::binary) << line << "\n";
}
