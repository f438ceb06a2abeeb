// Profiles: the INI files of a Linux computer, used by many threads and processes at once.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/files/settling.h"
#include "platform/profiles.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// How long an access waits for a file that another process holds.
struct ProfileWaits {
  std::chrono::milliseconds read{20};     ///< then the file counts as locked
  std::chrono::milliseconds write{2000};  ///< then the write fails
  /// How long a read waits for a text to settle of which the system does not tell whether its writer has finished; then
  /// it is taken as it is.
  std::chrono::milliseconds settle{600};
};

/// INI files by the rules of Windows' private-profile operations, byte for byte. A write replaces the file as a whole,
/// so that readers and a sudden end of the program never see half of it, and keeps its mode and owner; a symbolic link
/// stays and its target is replaced. Texts end at their first NUL, as the system's own operations take them.
class LinuxProfiles : public Profiles {
 public:
  /// `resolve` turns a Windows path into a native one. Both arguments live as long as this object and may be used by
  /// several threads.
  LinuxProfiles(std::function<std::string(std::string_view)> resolve, Trace& trace, ProfileWaits waits = {});

  std::string read(std::optional<std::string_view> section, std::optional<std::string_view> key,
                   std::string_view fallback, std::size_t size, std::string_view file) override;

  bool write(std::optional<std::string_view> section, std::optional<std::string_view> key,
             std::optional<std::string_view> value, std::string_view file) override;

  /// A batch costs one replacement and one flush a file; used by one thread.
  void beginBatch() override { batching_ = true; }
  void endBatch() override;

 private:
  /// A write that is kept back.
  struct HeldWrite {
    std::string section;
    std::optional<std::string> key;
    std::optional<std::string> value;
  };
  struct HeldFile {
    std::string file;  ///< as the first write named it
    std::vector<HeldWrite> writes;
  };

  std::function<std::string(std::string_view)> resolve_;
  Trace& trace_;
  ProfileWaits waits_;
  Settling settling_;
  bool batching_ = false;
  std::map<std::string, HeldFile> held_;  ///< by native path
};

}  // namespace tellaxis::platform
