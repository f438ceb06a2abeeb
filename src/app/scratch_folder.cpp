// Scratch folder: making, reading and removing.
#include "app/scratch_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace tellaxis {

namespace {

namespace fs = std::filesystem;

constexpr int mostAttempts = 8;

fs::path pathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

}  // namespace

/// A name that is taken, by whomever, is not used.
ScratchFolder::ScratchFolder() {
  std::error_code error;
  const fs::path parent = fs::temp_directory_path(error);
  std::random_device random;
  for (int attempt = 0; attempt < mostAttempts && !error; ++attempt) {
    const fs::path folder = parent / ("tellaxis-anteprima-" + std::to_string(random()));
    if (!fs::create_directory(folder, error) || error) continue;
    fs::permissions(folder, fs::perms::owner_all, error);
    const std::u8string path = folder.u8string();
    path_.assign(path.begin(), path.end());
    return;
  }
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  if (!path_.empty()) fs::remove_all(pathOf(path_), ignored);
}

std::vector<std::string> ScratchFolder::contentsOf(std::string_view extension) const {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator file(pathOf(path_), error), end; !error && file != end; file.increment(error))
    if (file->path().extension() == fs::path(extension)) files.push_back(file->path());
  std::ranges::sort(files);
  std::vector<std::string> contents;
  for (const fs::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    contents.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  return contents;
}

}  // namespace tellaxis
