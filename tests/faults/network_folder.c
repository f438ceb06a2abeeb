// Network folder: preloaded into a program, it lets every file lie on a file system of another computer.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/vfs.h>

/* The number that a variable of the environment holds; 0 where it is not set. */
static long number_of(const char* variable) {
  const char* text = getenv(variable);
  return text == NULL ? 0 : strtol(text, NULL, 0);
}

/* Fails with the error that the variable holds; the caller goes on where it holds none. */
static int refused(const char* variable) {
  const int error = (int)number_of(variable);
  if (error != 0) errno = error;
  return error != 0;
}

static int type_stated(int status, long* type) {
  if (status == 0 && number_of("NETWORK_TYPE") != 0) *type = number_of("NETWORK_TYPE");
  return status;
}

#define STATE_THE_TYPE(name, subject, buffer)                           \
  int name(subject file, struct buffer* status) {                       \
    static int (*original)(subject, struct buffer*);                    \
    if (original == NULL) *(void**)&original = dlsym(RTLD_NEXT, #name); \
    return type_stated(original(file, status), (long*)&status->f_type); \
  }

STATE_THE_TYPE(fstatfs, int, statfs)
STATE_THE_TYPE(fstatfs64, int, statfs64)
STATE_THE_TYPE(statfs, const char*, statfs)
STATE_THE_TYPE(statfs64, const char*, statfs64)

#define REFUSE_LEASES(name)                                                                         \
  int name(int file, int command, ...) {                                                            \
    static int (*original)(int, int, void*);                                                        \
    va_list more;                                                                                   \
    va_start(more, command);                                                                        \
    void* argument = va_arg(more, void*);                                                           \
    va_end(more);                                                                                   \
    if (original == NULL) *(void**)&original = dlsym(RTLD_NEXT, #name);                             \
    if (command == F_SETLEASE && argument != (void*)F_UNLCK && refused("NETWORK_LEASE")) return -1; \
    return original(file, command, argument);                                                       \
  }

REFUSE_LEASES(fcntl)
REFUSE_LEASES(fcntl64)

int flock(int file, int operation) {
  static int (*original)(int, int);
  if (original == NULL) *(void**)&original = dlsym(RTLD_NEXT, "flock");
  return refused("NETWORK_LOCK") ? -1 : original(file, operation);
}
