/* Newer than XP: a program that imports a function of the C run-time that Windows XP does not have. */
#include <time.h>

int main(void) { return _difftime64(_time64(0), 0) > 0 ? 0 : 1; }
