/* Ends with box: a program that ends by the C run-time's own abort. */
#include <stdlib.h>

int main(int count, char** words) {
  (void)words;
  if (count > 1) abort();
  return 0;
}
