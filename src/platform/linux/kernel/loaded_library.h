// Loaded library: what only some computers, or only now and then, need.
#pragma once

#include <atomic>

#include "platform/trace.h"

namespace tellaxis::platform {

/// What the function `entry` of the shared library `file` returns; null when it cannot be loaded, which is reported to
/// the trace. Looked for beside the program, as built, and in the folder of libraries, as installed. The library stays
/// loaded: what it is linked with cannot be unloaded.
const void* loadLibrary(const char* file, const char* entry, Trace& trace);

/// The functions of type `Library` that `file` offers, loaded when first asked for. What could not be loaded is tried
/// again when asked for again: it may have been short of memory or files for a moment. May be
/// called from several threads.
template <typename Library>
const Library* loadedLibrary(const char* file, const char* entry, Trace& trace) {
  static std::atomic<const Library*> library = nullptr;
  if (library == nullptr) library = static_cast<const Library*>(loadLibrary(file, entry, trace));
  return library;
}

}  // namespace tellaxis::platform
