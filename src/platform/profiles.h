// Profiles: reading and writing single keys of INI files with the meaning of Windows' private-profile operations.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tellaxis::platform {

/// Section and key names match without regard to ASCII case; the first section and the first key of a name win.
/// The file is read anew for every access, so that an outside writer may replace it at any time.
class Profiles {
 public:
  virtual ~Profiles() = default;

  /// The value of `key` in `section` of `file`, at most `size - 1` bytes of it, trimmed of blanks and of one pair of
  /// quotes. An absent file, section or key gives `fallback`, cut in the same way. An absent `section` lists the
  /// section names and an absent `key` the key names of a section, each ended by a NUL.
  virtual std::string read(std::optional<std::string_view> section, std::optional<std::string_view> key,
                           std::string_view fallback, std::size_t size, std::string_view file) = 0;

  /// Stores `value` under `key`; an absent value deletes the key, an absent key the whole section. A missing file is
  /// created, a missing folder is a failure. The file is not touched when it already says so. False when nothing could
  /// be stored, as it is for an absent section.
  virtual bool write(std::optional<std::string_view> section, std::optional<std::string_view> key,
                     std::optional<std::string_view> value, std::string_view file) = 0;

  /// From here on writes may be kept back: they succeed, reads see them, and `endBatch` stores those of each file at
  /// once, whole or not at all. Nothing is kept back unless an implementation gains by it.
  virtual void beginBatch() {}
  virtual void endBatch() {}
};

/// A batch that lasts as long as this lives.
class ProfileBatch {
 public:
  explicit ProfileBatch(Profiles& profiles) : profiles_(profiles) { profiles_.beginBatch(); }
  ~ProfileBatch() { profiles_.endBatch(); }
  ProfileBatch(const ProfileBatch&) = delete;
  ProfileBatch& operator=(const ProfileBatch&) = delete;

 private:
  Profiles& profiles_;
};

}  // namespace tellaxis::platform
