// Loaded libraries: looking for them, once each.
#include "platform/linux/loaded_libraries.h"

#include <dlfcn.h>

#include <string>

#include "platform/resident.h"
#include "platform/virtual/code_page.h"

namespace tellaxis::platform {

namespace {

/// Where the libraries may be, seen from the program's folder: as built, and as installed.
constexpr const char* places[] = {"/", "/../lib/tellaxis/"};

/// The library stays loaded: what it is linked with cannot be unloaded.
template <class Library>
const Library* load(const char* file, const char* entry, Trace& trace) {
  std::string reason;
  for (const char* place : places) {
    void* handle = dlopen((programFolder() + place + file).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* symbol = handle == nullptr ? nullptr : dlsym(handle, entry);
    if (symbol != nullptr) return reinterpret_cast<const Library* (*)()>(symbol)();
    const char* error = dlerror();
    if (reason.empty() && error != nullptr) reason = error;
  }
  trace.failed("dlopen", file, nearestCodePage(reason));
  return nullptr;
}

}  // namespace

const PageLibrary* pageLibrary(Trace& trace) {
  static const PageLibrary* library = load<PageLibrary>(pageLibraryFile, pageLibraryEntry, trace);
  return library;
}

const CupsLibrary* cupsLibrary(Trace& trace) {
  static const CupsLibrary* library = load<CupsLibrary>(cupsLibraryFile, cupsLibraryEntry, trace);
  return library;
}

const FtpLibrary* ftpLibrary(Trace& trace) {
  static const FtpLibrary* library = load<FtpLibrary>(ftpLibraryFile, ftpLibraryEntry, trace);
  return library;
}

}  // namespace tellaxis::platform
