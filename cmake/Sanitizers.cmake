# Sanitizers: TELLAXIS_SANITIZE=address,undefined builds everything with these checks, the first finding being fatal.
set(TELLAXIS_SANITIZE "" CACHE STRING "Sanitizers to build with, comma separated")
if(TELLAXIS_SANITIZE)
  add_compile_options(-fsanitize=${TELLAXIS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TELLAXIS_SANITIZE})
endif()
