// Profiles of Windows: the system's private-profile operations.
#pragma once

#include "platform/profiles.h"
#include "platform/trace.h"

namespace tellaxis::platform {

class WindowsProfiles : public Profiles {
 public:
  explicit WindowsProfiles(Trace& trace) : trace_(trace) {}

  std::string read(std::optional<std::string_view> section, std::optional<std::string_view> key,
                   std::string_view fallback, std::size_t size, std::string_view file) override;
  bool write(std::optional<std::string_view> section, std::optional<std::string_view> key,
             std::optional<std::string_view> value, std::string_view file) override;

 private:
  Trace& trace_;
};

}  // namespace tellaxis::platform
