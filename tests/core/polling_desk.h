// Polling desk: a cash desk with empty job folders and all devices active, ready to be polled.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/fake_devices.h"
#include "core/polling.h"
#include "fake/computer.h"

namespace tellaxis::test {

struct PollingDesk {
  explicit PollingDesk(platform::BridgeOptions options = {}) : bridge(computer.host, std::move(options)) {
    Settings& settings = bridge.settings;
    setMainFolder(settings, "C:\\cassa");
    for (const char* folder : {"C:\\cassa\\CortOrbis", "C:\\cassa\\CortIN", "C:\\cassa\\Orbis", "C:\\cassa\\IN"})
      computer.files.addFolder(folder);
    settings.Display_Active = settings.MF_Active = settings.RF_Active = settings.Cort_Active = true;
    settings.Display_File = "C:\\display.txt";
    settings.MF_File = "C:\\mf\\in.txt";
    settings.MF_File_Output = "C:\\mf\\out.txt";
    settings.RF_File = "C:\\rf.txt";
    settings.RF_Stampante = "EPSON TM-L90 Receipt";
    settings.RF_Seriale = std::string("LPT1:");
  }

  void drop(std::string_view name) { computer.files.put("C:\\cassa\\Orbis\\" + std::string(name), name); }
  void gate(std::string_view key, std::string_view value) { computer.profiles.put(file, "Varie", key, value); }
  void route(std::string_view kind) { SmistaFile(bridge, devices, dropFolder, file, workFolder, kind); }
  std::vector<std::string> jobs() { return computer.journal.callsThatBegin("MF_Invia"); }

  static constexpr std::string_view file = "C:\\cassa\\_Tellaxis.ini";

  fake::Computer computer;
  Bridge bridge;
  fake::Devices devices{computer.journal};
  Polling polling{bridge, devices};
  std::string dropFolder = "C:\\cassa\\Orbis";
  std::string workFolder = "C:\\cassa\\IN";
};

}  // namespace tellaxis::test
