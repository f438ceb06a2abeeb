// Diary devices: the devices, each job of which is entered in the diary.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include "core/activity.h"
#include "core/bridge.h"
#include "core/devices.h"
#include "diary/content.h"
#include "diary/diary.h"

namespace tellaxis {

/// A slip or display file that stays after a failure comes again with every tick: its first line says so, and another
/// one of the same id, with the count, is written when that ends.
class DiaryDevices : public Devices {
 public:
  /// `devices` are those whose jobs `activity` hears of.
  DiaryDevices(Devices& devices, const Activity& activity, Bridge& bridge, Diary& diary)
      : devices_(devices), activity_(activity), bridge_(bridge), diary_(diary) {}
  ~DiaryDevices() override;
  DiaryDevices(const DiaryDevices&) = delete;
  DiaryDevices& operator=(const DiaryDevices&) = delete;

  void LanciaFileDisplay() override;
  void MF_Invia(std::string_view jobFile) override;
  void LanciaFileRF() override;
  void Cort_StampaFile(std::string_view jobFile) override;

 private:
  /// A job that failed and is still there.
  struct Staying {
    DiaryEntry entry;
    std::uint64_t content = 0;
    bool counted = false;  ///< it was tried again since its line was written
  };

  struct UnderWay {
    DiaryEntry entry;  ///< without an id where the diary failed
    std::uint64_t content = 0;
    Moment begun;
  };

  template <typename Step>
  void attempt(std::string_view jobFile, Step step);
  template <typename Job>
  void note(Device device, std::string_view jobFile, Job job);
  UnderWay begin(Device device, std::string_view jobFile);
  void finish(UnderWay& underWay, std::string_view jobFile);
  Content contentFor(Device device, std::string_view jobFile) const;
  void endOfSeries(Device device);

  Devices& devices_;
  const Activity& activity_;
  Bridge& bridge_;
  Diary& diary_;
  std::map<Device, Staying> staying_;
};

}  // namespace tellaxis
