// Line: the serial line of a device.
#pragma once

#include <string>
#include <string_view>

#include "check/scene.h"

namespace tellaxis {

/// The two settings of a line, each with its key.
struct LineKeys {
  std::string_view portKey;
  Value port;
  std::string_view settingsKey;
  std::string settings;
};

/// "COM3 (9600,N,8,1)".
std::string lineText(const CheckScene& scene, const LineKeys& keys);

void checkLine(const CheckScene& scene, Findings& findings, const LineKeys& keys);

}  // namespace tellaxis
