// Words: amounts of time and number, paths and lists as a sentence has them.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "check/scene.h"

namespace tellaxis {

/// "25 minuti"; the largest unit of which there are two at least.
std::string durationText(std::chrono::seconds duration);

/// "1 lavoro", "3 lavori".
std::string counted(std::size_t count, std::string_view one, std::string_view many);

/// "a, b, c"; of a long list the first ones and how many more there are.
std::string listed(const std::vector<std::string>& words);

/// A setting as a sentence shows it: "(vuoto)" where it is empty.
std::string shown(std::string_view setting);

/// The folder of a path, a drive's root with its backslash; empty for a bare name.
std::string folderOf(std::string_view path);

/// The text of a setting, and of a key that the settings do not keep.
std::string textOf(const CheckScene& scene, const Value& value);
std::string readKey(const CheckScene& scene, std::string_view key);

}  // namespace tellaxis
