// Diary desk: a fake computer with a diary, and jobs that do what a test says.
#pragma once

#include <string>
#include <vector>

#include "core/activity.h"
#include "diary/diary.h"
#include "diary/diary_devices.h"
#include "diary/reader.h"
#include "fake/computer.h"
#include "fake/scripted_devices.h"

namespace tellaxis {

/// The day of the fake computer's clock.
inline constexpr Day march7{std::chrono::year(2003) / 3 / 7};
inline constexpr std::string_view diaryAt = "C:\\cassa\\diario";
inline constexpr std::string_view dayAt = "C:\\cassa\\diario\\2003-03-07.jsonl";

struct DiaryDesk {
  explicit DiaryDesk(Diary::Keeping keeping = {.archive = true, .days = std::nullopt})
      : diary(computer.host, std::string(diaryAt), keeping) {
    bridge.settings.RF_File = "C:\\RF\\ricevuta.txt";
    bridge.settings.Display_File = "C:\\DISP\\display.txt";
    computer.files.put("C:\\cassa\\IN\\a.txt", "scontrino");
  }

  std::vector<DiaryEntry> entries() { return readDay(computer.host, diaryAt, march7); }
  std::string lines() const { return computer.files.text(dayAt); }
  void fails(std::string_view reason) { activity.failed("EndDoc", "LPT1:", reason); }

  fake::Computer computer;
  Bridge bridge{computer.host};
  fake::ScriptedDevices jobs;
  Activity activity;
  NotedDevices noted{jobs, activity, bridge};
  Diary diary;
  DiaryDevices devices{noted, activity, bridge, diary};
};

}  // namespace tellaxis
