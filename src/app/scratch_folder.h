// Scratch folder: a folder for this user alone, which goes with what is in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tellaxis {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  /// Native, in UTF-8; empty where none could be made.
  const std::string& path() const { return path_; }

  /// The bytes of each file with this extension, in the order of their names.
  std::vector<std::string> contentsOf(std::string_view extension) const;

 private:
  std::string path_;
};

}  // namespace tellaxis
