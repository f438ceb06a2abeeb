// Desktop: message boxes and the tray, answered by the tests.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fake/journal.h"
#include "platform/dialogs.h"
#include "platform/tray.h"

namespace tellaxis::fake {

class Dialogs : public platform::Dialogs {
 public:
  explicit Dialogs(Journal& journal) : journal_(journal) {}

  platform::Answer yesNoAnswer = platform::Answer::yes;
  /// What happens while a message box is open.
  std::function<void()> onShow;

  platform::Answer show(std::string_view text, std::string_view title, platform::Buttons buttons) override {
    const bool question = buttons == platform::Buttons::yesNo;
    journal_.record((question ? "ask " : "message ") + std::string(title) + ": " + std::string(text));
    if (onShow) onShow();
    return question ? yesNoAnswer : platform::Answer::ok;
  }
  void processEvents() override { journal_.record("processEvents"); }

 private:
  Journal& journal_;
};

class Tray : public platform::Tray {
 public:
  explicit Tray(Journal& journal) : journal_(journal) {}

  bool present = true;
  int icons = 0;
  std::vector<platform::TrayRecord> records;

  bool available() override { return present; }
  bool notify(platform::TrayAction action, const platform::TrayRecord& record) override {
    const bool add = action == platform::TrayAction::add;
    if (!journal_.record(add ? "tray add" : "tray remove")) return false;
    records.push_back(record);
    if (!present || add == (icons > 0)) return false;
    icons += add ? 1 : -1;
    return true;
  }

 private:
  Journal& journal_;
};

}  // namespace tellaxis::fake
