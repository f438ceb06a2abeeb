// Form: the records of a slip job collected into header blocks and body sections.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "slip/records.h"

namespace tellaxis {

/// Lines of a header, each with its line end.
struct HeaderBlock {
  std::string text;
  int count = 0;
};

/// One job as the two-copy layouts print it: a form for each section up to the last one.
struct SlipForm {
  HeaderBlock firstHeader;
  HeaderBlock secondHeader;
  std::array<std::string, 3> sections;
  std::int16_t bodyLines = 0;
  std::size_t lastSection = 0;  ///< index of the last section that is printed
  std::string bodyPad;          ///< blank lines that fill up the last section
};

/// Reads a job to its end. Throws `StepFailed` when the file cannot be read, at a header or body record without its
/// separator, and beyond 32767 body lines.
SlipForm readSlipForm(Records& records);

/// What a record says: what stands behind its marker and separator. Throws `StepFailed` for a record shorter than
/// these.
std::string_view textOfRecord(std::string_view record);

}  // namespace tellaxis
