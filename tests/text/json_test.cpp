// JSON: objects written and read back.
#include "text/json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace tellaxis {
namespace {

using Members = std::vector<std::pair<std::string, std::string>>;
using testing::ElementsAre;
using testing::Pair;

std::pair<bool, Members> read(std::string_view json) {
  Members members;
  const bool whole =
      readJsonObject(json, [&](std::string_view name, std::string_view value) { members.emplace_back(name, value); });
  return {whole, members};
}

TEST(JsonObject, WritesTextsAndNumbersInTheOrderOfTheCalls) {
  EXPECT_EQ(JsonObject().text(), "{}");
  EXPECT_EQ(JsonObject().add("a", "x").add("b", -12).text(), R"({"a":"x","b":-12})");
}

TEST(JsonObject, EscapesWhatJsonReservesAndWritesUtf8) {
  EXPECT_EQ(JsonObject().add("t", "\x80 \xE8 \"C:\\a\"\r\n\x01").text(),
            "{\"t\":\"\xE2\x82\xAC \xC3\xA8 \\\"C:\\\\a\\\"\\r\\n\\u0001\"}");
}

TEST(ReadJsonObject, GivesBackEveryByteThatWasWritten) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  const auto [whole, members] = read(JsonObject().add("t", bytes).add("n", 7).text());
  EXPECT_TRUE(whole);
  EXPECT_THAT(members, ElementsAre(Pair("t", bytes), Pair("n", "7")));
}

TEST(ReadJsonObject, TakesBlanksEscapesAndForeignCharacters) {
  const auto [whole, members] = read(" { \"a\" : \"\\u00e8\\/\\u4e00\" , \"b\" : true } ");
  EXPECT_TRUE(whole);
  EXPECT_THAT(members, ElementsAre(Pair("a", "\xE8/?"), Pair("b", "true")));
  EXPECT_TRUE(read("{}").first);
}

TEST(ReadJsonObject, RefusesWhatIsNoFlatObject) {
  for (const std::string_view json :
       {"", "{", "{\"a\"", "{\"a\":", "{\"a\":1", "{\"a\":\"x", "{\"a\":\"x\\", "{\"a\":\"\\u00", "{\"a\":\"\\u00zz\"}",
        "{\"a\":\"\\q\"}", "{\"a\":{}}", "{\"a\":[1]}", "{\"a\":1}x", "[1]", "{\"a\":1,}"})
    EXPECT_FALSE(read(json).first) << json;
}

TEST(ReadJsonObject, NoBeginningOfAnObjectIsTakenForTheWhole) {
  const std::string json = JsonObject().add("name", "\x80uro \"x\"").add("bytes", 12).text();
  for (std::size_t length = 0; length < json.size(); ++length) EXPECT_FALSE(read(json.substr(0, length)).first);
}

}  // namespace
}  // namespace tellaxis
