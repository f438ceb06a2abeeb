// Metrics text: families of samples in the text format that collectors of text files read.
#pragma once

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tellaxis {

/// A label's name and its value, which may be any text in UTF-8.
struct Label {
  std::string_view name;
  std::string_view value;
};
using Labels = std::initializer_list<Label>;

/// Writes the classic text format: the collectors refuse what the newer one has beyond it. Its closing line is written
/// too; to readers of the classic format it is a comment.
class MetricsText {
 public:
  /// The samples that follow belong to this family. One without samples is not mentioned.
  void family(std::string_view name, std::string_view type, std::string_view help);

  /// `suffix` is what a sample's name has behind that of its family.
  void sample(std::string_view suffix, Labels labels, std::uint64_t value);
  void sample(std::string_view suffix, Labels labels, std::chrono::microseconds value);  ///< in seconds

  /// All that was written, ended.
  std::string end();

 private:
  void begin(std::string_view suffix, Labels labels);

  std::string text_;
  std::string_view name_;
  std::string_view type_;
  std::string_view help_;
  bool isOpen_ = false;  ///< the family was mentioned
};

}  // namespace tellaxis
