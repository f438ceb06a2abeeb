// Clock shift: preloaded into a program, it sets the program's time of day by what a file says.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

/* Seconds that the file named by CLOCK_SHIFT holds; 0 where there is none. */
static long shift(void) {
  const char* path = getenv("CLOCK_SHIFT");
  FILE* file = path == NULL ? NULL : fopen(path, "r");
  long seconds = 0;
  if (file == NULL) return 0;
  if (fscanf(file, "%ld", &seconds) != 1) seconds = 0;
  fclose(file);
  return seconds;
}

int clock_gettime(clockid_t clock, struct timespec* time) {
  static int (*original)(clockid_t, struct timespec*);
  if (original == NULL) *(void**)&original = dlsym(RTLD_NEXT, "clock_gettime");
  const int status = original(clock, time);
  if (status == 0 && clock == CLOCK_REALTIME) time->tv_sec += shift();
  return status;
}
