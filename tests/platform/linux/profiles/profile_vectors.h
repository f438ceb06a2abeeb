// Profile vectors: operations on INI files, their results and the bytes that must remain, on which every platform
// agrees.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "platform/profiles.h"

namespace tellaxis::test {

using ProfileVector = nlohmann::json;

inline std::vector<ProfileVector> profileVectors() {
  std::ifstream stream(TEST_DATA "/data/ini_vectors.json");
  return nlohmann::json::parse(stream).get<std::vector<ProfileVector>>();
}

inline std::string nameOf(const testing::TestParamInfo<ProfileVector>& vector) {
  return vector.param["name"].get<std::string>();
}

inline std::optional<std::string> bytesFromHex(const nlohmann::json& hex) {
  if (hex.is_null()) return std::nullopt;
  const auto text = hex.get<std::string>();
  std::string bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2)
    bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
  return bytes;
}

/// The bytes of a text whose characters U+0000 to U+00FF stand for one byte each.
inline std::optional<std::string> bytesFromText(const nlohmann::json& text) {
  if (text.is_null()) return std::nullopt;
  const auto utf8 = text.get<std::string>();
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    bytes += c < 0x80 ? utf8[i] : static_cast<char>(((c & 0x03) << 6) | (utf8[++i] & 0x3F));
  }
  return bytes;
}

/// Carries out the operations of `vector` on `file` and checks each result.
inline void carryOut(const ProfileVector& vector, platform::Profiles& profiles, const std::string& file) {
  for (const auto& operation : vector["ops"]) {
    const auto section = bytesFromText(operation["section"]);
    const auto key = bytesFromText(operation["key"]);
    const auto& result = operation["result"];
    if (operation["op"] == "get") {
      const std::string fallback = bytesFromText(operation["default"]).value_or("");
      const std::string read = profiles.read(section, key, fallback, operation["size"].get<std::size_t>(), file);
      EXPECT_EQ(read, bytesFromText(result["text"])) << operation;
      EXPECT_EQ(read.size(), result["length"].get<std::size_t>()) << operation;
    } else {
      ASSERT_EQ(operation["op"], "set");
      const bool stored = profiles.write(section, key, bytesFromText(operation["value"]), file);
      EXPECT_EQ(stored, result["ok"].get<bool>()) << operation;
    }
  }
}

}  // namespace tellaxis::test
