// Take-over desk: a cash desk with settings files of our own and of the point-of-sale application.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "core/bridge.h"
#include "fake/computer.h"
#include "fake/sweep.h"

namespace tellaxis::fake {

/// The two settings files.
inline constexpr std::string_view own = "C:\\Tellaxis\\_Tellaxis.ini";
inline constexpr std::string_view pointOfSale = "C:\\MERIDIA\\_Local.ini";

struct TakeOverDesk {
  TakeOverDesk() {
    setMainFolder(bridge.settings, "C:\\Tellaxis");
    setPointOfSaleFolder(bridge.settings, "C:\\MERIDIA");
  }

  void posSetting(std::string_view key, std::string_view value) {
    computer.profiles.put(pointOfSale, "Varie", key, value);
  }
  void setting(std::string_view key, std::string_view value) { computer.profiles.put(own, "VARIE", key, value); }
  std::string setting(std::string_view key) const {
    return computer.profiles.value(own, "VARIE", key).value_or("(none)");
  }

  /// The assignments written so far, all of them typed and to our own settings file.
  Calls typedWrites() const {
    constexpr std::string_view beginning = "write [VARIE] ";
    constexpr std::string_view end = " to C:\\Tellaxis\\_Tellaxis.ini";
    Calls assignments;
    for (const std::string& call : computer.journal.callsThatBegin("write ")) {
      EXPECT_TRUE(call.starts_with(beginning) && call.ends_with(end)) << call;
      assignments.push_back(call.substr(beginning.size(), call.size() - beginning.size() - end.size()));
    }
    return assignments;
  }

  Computer computer;
  Bridge bridge{computer.host};
};

}  // namespace tellaxis::fake
