// Terminate: what happens on an exception that nobody catches, and on abort: the program ends at once, without a box
// that waits for somebody to press a key, and without the compiler's report, whose reader of mangled names would be
// larger than the whole bridge's rules.
#include <windows.h>

#include <cstdlib>
#include <exception>

namespace {

/// What the C run-time's own abort gives.
constexpr UINT statusAborted = 3;

[[noreturn]] void endAtOnce() {
  for (;;) TerminateProcess(GetCurrentProcess(), statusAborted);
}

}  // namespace

namespace __cxxabiv1 {

// The name by which the compiler's library lets a program choose.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern std::terminate_handler __terminate_handler;
std::terminate_handler __terminate_handler = endAtOnce;
// NOLINTEND(bugprone-reserved-identifier)

}  // namespace __cxxabiv1

/// Stands in the place of the C run-time's, which shows a box in a program with a window.
extern "C" void abort() { endAtOnce(); }

using Abort = void (*)();
extern "C" Abort importedAbort __asm__("__imp__abort");
Abort importedAbort = abort;
