# Warnings: one set for every target of our own, and all of them are errors.
add_library(tellaxis_warnings INTERFACE)
target_compile_options(tellaxis_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Wold-style-cast
  -Wno-missing-field-initializers -Werror)
# g++ 12 sees overlapping copies in std::string's operator+ that are none (bug 105651 of the compiler).
target_compile_options(tellaxis_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# Optimising, it also takes a temporary that is moved from for one that was never made (bug 105562).
target_compile_options(tellaxis_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
