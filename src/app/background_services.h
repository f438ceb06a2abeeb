// Background services: the windows' questions answered by the commands' own means, with services of their own.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/bridge_options.h"
#include "platform/system.h"
#include "ui/model/background_work.h"

namespace tellaxis {

/// Opens the services anew for each operation, as a command beside the bridge would: so it may run on any thread.
class BackgroundServices : public ui::BackgroundWork {
 public:
  /// `bridge` is what the devices file switched on when the bridge started; `mainFolder` is in code page 1252.
  BackgroundServices(platform::SystemOptions system, platform::BridgeOptions bridge, std::string mainFolder);

  std::vector<Finding> check(bool network) override;
  std::string tryDevice(Device device) override;
  bool keepsDiary() const override { return !bridge_.diary.empty(); }
  std::vector<Day> days() override;
  std::vector<DiaryEntry> entries(Day day) override;
  ui::JobLook lookAt(const DiaryEntry& entry) override;
  std::string reprint(const std::string& id, ReprintConsent consent) override;

 private:
  std::unique_ptr<platform::System> open(const std::string& printInto = {}) const;
  void addPages(ui::JobLook& look, const DiaryEntry& entry, const std::string& copy) const;

  const platform::SystemOptions system_;
  const platform::BridgeOptions bridge_;
  const std::string mainFolder_;
  const std::string diary_;  ///< its folder
};

}  // namespace tellaxis
