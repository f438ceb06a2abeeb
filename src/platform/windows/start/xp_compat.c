/* XP compatibility: what the static libraries import and XP lacks: GetTickCount64 of kernel32, for the threads. */
#include <windows.h>

typedef ULONGLONG(WINAPI* Counter)(void);

/* Milliseconds counted by GetTickCount, with the turns of its 32 bits. Looked at at least once in 49 days. */
static ULONGLONG WINAPI countTurns(void) {
  static volatile LONG turns, last;
  DWORD now = GetTickCount();
  LONG before = InterlockedExchange(&last, (LONG)now);
  if (now < (DWORD)before && (DWORD)before - now > 0x80000000u) InterlockedIncrement(&turns);
  return ((ULONGLONG)(DWORD)turns << 32) | now;
}

static ULONGLONG WINAPI tickCount64(void) {
  static Counter counter;
  if (!counter) {
    FARPROC found = GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetTickCount64");
    counter = found ? (Counter)(void*)found : countTurns;
  }
  return counter();
}

/* The name under which the linker looks for the address of the imported function. */
Counter importedTickCount64 __asm__("__imp__GetTickCount64@0") = tickCount64;
