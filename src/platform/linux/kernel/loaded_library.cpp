// Loaded library: looking for it beside the program and where it is installed.
#include "platform/linux/kernel/loaded_library.h"

#include <dlfcn.h>

#include <string>

#include "platform/program.h"
#include "text/code_page.h"

namespace tellaxis::platform {

namespace {

constexpr const char* places[] = {"/", "/../lib/tellaxis/"};

}  // namespace

const void* loadLibrary(const char* file, const char* entry, Trace& trace) {
  std::string reason;
  for (const char* place : places) {
    void* handle = dlopen((programFolder() + place + file).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* symbol = handle == nullptr ? nullptr : dlsym(handle, entry);
    if (symbol != nullptr) return reinterpret_cast<const void* (*)()>(symbol)();
    const char* error = dlerror();
    if (reason.empty() && error != nullptr) reason = error;
  }
  trace.failed("dlopen", file, nearestCodePage(reason));
  return nullptr;
}

}  // namespace tellaxis::platform
