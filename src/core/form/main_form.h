// Main form: its controls as plain data, shared by the rules, the window and the tests.
#pragma once

#include <string>
#include <vector>

#include "core/form/serial_control.h"

namespace tellaxis {

struct TextBox {
  std::string Text;
};

/// Checked when `Value` is not 0.
struct CheckBox {
  int Value = 0;
};

/// A list with a text that may also be typed.
struct ComboBox {
  std::string Text;
  std::vector<std::string> List;
};

/// Every control of the main form that holds something. Assigning to one fires nothing; only the user's own change
/// does.
struct MainForm {
  explicit MainForm(platform::Host& host) : MSComm1(host), COMPreconto(host) {}

  // Generale
  CheckBox chkOrbis;
  TextBox Orbis51Dir;
  ComboBox Postazione;
  // Display
  CheckBox DLY_Active;
  TextBox DLY_File;
  ComboBox DLY_Type;
  ComboBox DLY_com;
  TextBox DLY_Param;
  TextBox DLY_Delay;
  // Misuratore fiscale
  CheckBox MF_Active;
  TextBox MF_File;
  TextBox MF_FileOutput;
  ComboBox MF_Type;
  ComboBox MF_Protocol;
  ComboBox MF_Com;
  TextBox MF_Param;
  CheckBox MF_Buffer;
  TextBox MF_Delay;
  CheckBox MF_chkLog;
  TextBox MF_Driver;
  // Ricevuta fiscale
  CheckBox RF_Active;
  ComboBox RF_Printer;
  TextBox RF_COM;
  TextBox RF_File;
  TextBox RF_Righe;
  // Preconto
  CheckBox Cort_Active;
  ComboBox Cort_Printer;
  TextBox Cort_COM;
  TextBox Cort_File;
  CheckBox Cort_Logo;
  // Serial lines: the customer display and the serial courtesy printer
  SerialControl MSComm1;
  SerialControl COMPreconto;
};

}  // namespace tellaxis
