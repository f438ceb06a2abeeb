// Profile vectors: operations on INI files, their results and the bytes that must remain, as Windows has them.
#include <nlohmann/json.hpp>

#include "platform/ini_folder.h"

namespace tellaxis::platform {
namespace {

using nlohmann::json;

json vectors() {
  std::ifstream stream(TEST_DATA "/data/ini_vectors.json");
  return json::parse(stream);
}

std::optional<std::string> bytesFromHex(const json& hex) {
  if (hex.is_null()) return std::nullopt;
  const auto text = hex.get<std::string>();
  std::string bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2)
    bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
  return bytes;
}

/// The bytes of a text whose characters U+0000 to U+00FF stand for one byte each.
std::optional<std::string> bytesFromText(const json& text) {
  if (text.is_null()) return std::nullopt;
  const auto utf8 = text.get<std::string>();
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    bytes += c < 0x80 ? utf8[i] : static_cast<char>(((c & 0x03) << 6) | (utf8[++i] & 0x3F));
  }
  return bytes;
}

class ProfileVectors : public IniFolder, public testing::WithParamInterface<json> {};

TEST_P(ProfileVectors, GiveTheResultsAndLeaveTheBytes) {
  const json& vector = GetParam();
  if (const auto initial = bytesFromHex(vector["initial_file_hex"])) put(*initial);
  for (const json& operation : vector["ops"]) {
    const auto section = bytesFromText(operation["section"]);
    const auto key = bytesFromText(operation["key"]);
    const json& result = operation["result"];
    if (operation["op"] == "get") {
      const std::string fallback = bytesFromText(operation["default"]).value_or("");
      const std::string read = profiles_.read(section, key, fallback, operation["size"].get<std::size_t>(), file_);
      EXPECT_EQ(read, bytesFromText(result["text"])) << operation;
      EXPECT_EQ(read.size(), result["length"].get<std::size_t>()) << operation;
    } else {
      ASSERT_EQ(operation["op"], "set");
      const bool stored = profiles_.write(section, key, bytesFromText(operation["value"]), file_);
      EXPECT_EQ(stored, result["ok"].get<bool>()) << operation;
    }
  }
  const auto final = bytesFromHex(vector["final_file_hex"]);
  EXPECT_EQ(std::filesystem::exists(file_), final.has_value());
  EXPECT_EQ(content(), final.value_or(""));
}

INSTANTIATE_TEST_SUITE_P(Windows, ProfileVectors, testing::ValuesIn(vectors().get<std::vector<json>>()),
                         [](const auto& vector) { return vector.param["name"].template get<std::string>(); });

TEST(ProfileVectorFile, HoldsEveryCase) { EXPECT_EQ(vectors().size(), 66u); }

}  // namespace
}  // namespace tellaxis::platform
