// Arguments: what the simulators understand on their command lines.
#pragma once

#include <getopt.h>

#include <charconv>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tellaxis::tools {

struct Argument {
  const char* name;  ///< without dashes
  bool hasValue;
  std::function<bool(std::string_view value)> take;  ///< false where the value cannot be used
};

/// Gives every option to whom it is for and returns the other words; none when something cannot be used.
inline std::optional<std::vector<std::string>> readArguments(int count, char** words, std::span<const Argument> known) {
  std::vector<::option> table;
  for (const Argument& argument : known)
    table.push_back({argument.name, argument.hasValue ? required_argument : no_argument, nullptr, 0});
  table.push_back({});
  opterr = 0;
  for (int place = 0, kind = 0; (kind = ::getopt_long(count, words, ":", table.data(), &place)) != -1;)
    if (kind != 0 || !known[place].take(optarg != nullptr ? optarg : "")) return std::nullopt;
  return std::vector<std::string>(words + optind, words + count);
}

/// Takes a whole number of at least `least` into `number`.
inline auto numberInto(int& number, int least) {
  return [&number, least](std::string_view text) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() && number >= least;
  };
}

/// Takes a text.
template <class Text>
auto into(Text& target) {
  return [&target](std::string_view text) {
    target = text;
    return true;
  };
}

/// Takes that a switch was given.
inline auto into(bool& target) {
  return [&target](std::string_view) { return target = true; };
}

}  // namespace tellaxis::tools
