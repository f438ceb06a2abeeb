# Warnings: one set for every target of our own, and all of them are errors.
add_library(tellaxis_warnings INTERFACE)
target_compile_options(tellaxis_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Wold-style-cast
  -Wno-missing-field-initializers -Werror)
