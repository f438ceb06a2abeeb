// JSON: writing objects and reading flat ones back, between code page 1252 inside the program and UTF-8 outside.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tellaxis {

/// Appends `text` as a JSON string with its quotes, in UTF-8.
void appendJsonText(std::string& json, std::string_view text);

/// An object of plain values, on one line, written member by member in the order of the calls.
class JsonObject {
 public:
  JsonObject& add(std::string_view name, std::string_view text);
  JsonObject& add(std::string_view name, std::int64_t number);

  /// The whole object, without a line's end.
  std::string text() const { return json_ + '}'; }

 private:
  void addName(std::string_view name);

  std::string json_ = "{";
};

/// One member of an object that is read: a text in code page 1252 ("?" for what that lacks), or the digits of a number
/// and the words true, false and null as they stand.
using JsonMember = std::function<void(std::string_view name, std::string_view value)>;

/// Reads an object whose values are no objects or lists; false, after the members before the mistake, for anything
/// else.
bool readJsonObject(std::string_view json, const JsonMember& member);

}  // namespace tellaxis
