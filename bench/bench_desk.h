// Bench desk: a main folder of its own for one measurement, and the services of this computer on it.
#pragma once

#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "platform/host.h"
#include "platform/system.h"

namespace tellaxis::bench {

/// Measures on a desk whose settings file holds `settings`, in a new folder of `words[1]`, or on tmpfs, and deletes the
/// folder. Gives back the program's exit status: that of `measure`, or 2 where there is no desk.
inline int onDesk(int count, char** words, std::string_view settings,
                  const std::function<int(platform::Host& host, const std::string& folder)>& measure) {
  std::string folder = std::string(count > 1 ? words[1] : "/dev/shm") + "/tellaxis-bench-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) {
    std::perror(folder.c_str());
    return 2;
  }
  for (const char* name : {"Orbis", "IN", "CortOrbis", "CortIN"})
    std::filesystem::create_directories(std::filesystem::path(folder) / name);
  std::ofstream(folder + "/_Tellaxis.ini") << "[Varie]\r\n" << settings;
  int status = 2;
  {
    auto opened = platform::openSystem({.mainFolder = folder});
    if (const auto* error = std::get_if<platform::SystemError>(&opened))
      std::fprintf(stderr, "%s\n", error->message.c_str());
    else
      status = measure(std::get<std::unique_ptr<platform::System>>(opened)->host(), folder);
  }
  std::filesystem::remove_all(folder);
  return status;
}

}  // namespace tellaxis::bench
