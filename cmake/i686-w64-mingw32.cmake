# Toolchain: 32-bit Windows from XP SP3 on, cross-compiled on Debian with mingw-w64; everything linked statically.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(triple i686-w64-mingw32)

# Always the -posix names: the other variant has neither std::mutex nor std::thread.
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
find_program(TELLAXIS_CROSS_AR ${triple}-gcc-ar-posix REQUIRED)
find_program(TELLAXIS_CROSS_RANLIB ${triple}-gcc-ranlib-posix REQUIRED)
set(CMAKE_AR ${TELLAXIS_CROSS_AR} CACHE FILEPATH "")
set(CMAKE_RANLIB ${TELLAXIS_CROSS_RANLIB} CACHE FILEPATH "")

# Nothing here may change time_t: the compiler's own libraries hand it on in 32 bits, and with another one every wait of
# std::this_thread and std::condition_variable ends at once. The Windows version is left to each target: wxWidgets needs a
# newer one than our own programs.
set(CMAKE_C_FLAGS_INIT "-ffunction-sections -fdata-sections")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
set(CMAKE_EXE_LINKER_FLAGS_INIT
  "-static -Wl,--gc-sections -Wl,--major-subsystem-version=5,--minor-subsystem-version=1")
set(CMAKE_EXE_LINKER_FLAGS_RELEASE_INIT "-s")

# Where scripts/build-wx-windows leaves the libraries.
if(NOT TELLAXIS_WIN_DEPS)
  if(DEFINED ENV{TELLAXIS_WIN_DEPS})
    set(TELLAXIS_WIN_DEPS "$ENV{TELLAXIS_WIN_DEPS}")
  elseif(DEFINED ENV{TELLAXIS_CACHE})
    set(TELLAXIS_WIN_DEPS "$ENV{TELLAXIS_CACHE}/wx-i686-3.2")
  elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(TELLAXIS_WIN_DEPS "$ENV{XDG_CACHE_HOME}/tellaxis/wx-i686-3.2")
  else()
    set(TELLAXIS_WIN_DEPS "$ENV{HOME}/.cache/tellaxis/wx-i686-3.2")
  endif()
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TELLAXIS_WIN_DEPS)

set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${TELLAXIS_WIN_DEPS})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
