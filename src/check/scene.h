// Scene: what the checks of all devices look at, and where they put what they find.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "check/codes.h"
#include "check/finding.h"
#include "core/bridge.h"
#include "platform/inspection.h"

namespace tellaxis {

/// Nothing of it is written to. The settings are those of the settings file.
struct CheckScene {
  Bridge& bridge;
  platform::Inspection& inspection;
  std::optional<std::uint32_t> servingProcess;  ///< of the bridge on this folder; 0: one whose number is unknown
  bool network = false;                         ///< servers may be asked
};

/// The findings about one device.
class Findings {
 public:
  Findings(Checked device, std::vector<Finding>& list) : device_(device), list_(list) {}

  void add(Code code, std::string text) {
    const CodeRow& row = rowOf(code);
    list_.push_back({device_, row.level, row.name, std::move(text), row.remedy});
  }

 private:
  Checked device_;
  std::vector<Finding>& list_;
};

}  // namespace tellaxis
