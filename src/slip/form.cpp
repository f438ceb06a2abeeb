// Form: markers, sections and padding.
#include "slip/form.h"

#include <iterator>
#include <limits>

#include "slip/require.h"

namespace tellaxis {

namespace {

constexpr std::string_view lineEnd = "\r\n";

constexpr std::size_t markerLength = 2;
constexpr std::size_t textAt = 3;

struct Header {
  std::string_view marker;
  HeaderBlock SlipForm::*block;
  int leastLines;
};

constexpr Header headers[] = {
    {.marker = "I1", .block = &SlipForm::firstHeader, .leastLines = 4},
    {.marker = "I2", .block = &SlipForm::secondHeader, .leastLines = 3},
};

constexpr std::string_view bodyMarker = "RR";

/// The number of the last body line of each section, counted from 0: it carries no line end, and a section is filled up
/// to as many lines. Lines beyond the last number go into the last section too.
constexpr int lastLines[] = {22, 44, 66};

void addBodyLine(SlipForm& form, std::string_view text) {
  std::size_t section = 0;
  while (section + 1 < std::size(lastLines) && form.bodyLines > lastLines[section]) ++section;
  form.sections[section].append(text);
  if (form.bodyLines != lastLines[section]) form.sections[section].append(lineEnd);
  require(form.bodyLines < std::numeric_limits<std::int16_t>::max(), "troppe righe");
  ++form.bodyLines;
}

void addRecord(SlipForm& form, std::string_view record) {
  const std::string_view marker = record.substr(0, markerLength);
  for (const Header& header : headers) {
    if (marker != header.marker) continue;
    HeaderBlock& block = form.*header.block;
    block.text.append(textOfRecord(record)).append(lineEnd);
    ++block.count;
    return;
  }
  if (marker == bodyMarker) addBodyLine(form, textOfRecord(record));
}

void padHeader(HeaderBlock& block, int leastLines) {
  for (int i = block.count; i < leastLines; ++i) block.text.append(lineEnd).append(" ");
}

/// Nothing is added where exactly one line is missing.
void padBody(SlipForm& form) {
  for (std::size_t section = std::size(lastLines); section-- > 0;) {
    if (form.sections[section].empty()) continue;
    form.lastSection = section;
    if (form.bodyLines + 1 < lastLines[section])
      for (int i = form.bodyLines; i < lastLines[section]; ++i) form.bodyPad.append(" ").append(lineEnd);
    return;
  }
}

}  // namespace

SlipForm readSlipForm(Records& records) {
  SlipForm form;
  while (const auto record = records.next()) addRecord(form, *record);
  for (const Header& header : headers) padHeader(form.*header.block, header.leastLines);
  padBody(form);
  return form;
}

std::string_view textOfRecord(std::string_view record) {
  require(record.size() >= textAt, "riga troppo corta");
  return record.substr(textAt);
}

}  // namespace tellaxis
