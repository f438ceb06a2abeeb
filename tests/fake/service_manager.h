// Service manager: what the program tells it, in order.
#pragma once

#include <string>
#include <vector>

#include "platform/service_manager.h"

namespace tellaxis::fake {

class ServiceManager : public platform::ServiceManager {
 public:
  std::vector<std::string> told;  ///< but the signs of life
  int signs = 0;                  ///< of life
  std::chrono::milliseconds interval{30'000};

  void ready() override { told.emplace_back("ready"); }
  void status(std::string_view line) override { told.emplace_back(line); }
  void alive() override { ++signs; }
  std::chrono::milliseconds signInterval() const override { return interval; }
  void stopping() override { told.emplace_back("stopping"); }
};

}  // namespace tellaxis::fake
