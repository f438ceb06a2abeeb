// Settings: the values that the devices work with, loaded from the settings file and edited on the main form.
#pragma once

#include <cstdint>
#include <string>

#include "core/ini/values.h"

namespace tellaxis {

struct Bridge;

/// The values of one load. Paths carry no trailing backslash; delays are in hundredths of a second.
struct Settings {
  std::string mainFolder;
  std::string settingsFile;             ///< main folder + "\_Tellaxis.ini"
  std::string pointOfSaleFolder;        ///< the folder of `Orbis51`
  std::string pointOfSaleSettingsFile;  ///< point-of-sale folder + "\_Local.ini"

  bool Orbis_Setting = false;
  bool pointOfSaleUnreachable = false;  ///< its folder did not answer at start-up: nothing is taken over from it

  bool Display_Active = false;
  std::string Display_File;
  std::string Display_Type;
  std::string Display_COM;
  std::string Display_Parametri;
  std::int16_t Display_Delay = 0;

  bool MF_Active = false;
  std::string MF_File;
  std::string MF_File_Output;
  std::string MF_type;
  std::string MF_Prot;
  std::string MF_COM;
  std::string MF_Parametri;
  Value MF_Buffer;
  Value MF_Ritardo;
  bool MF_ChkLog = false;
  std::string MF_Driver;

  bool RF_Active = false;
  std::string RF_Stampante;
  Value RF_Seriale;
  std::string RF_File;
  Value RF_Righe;

  bool Cort_Active = false;
  std::string Cort_Printer;
  Value Cort_Com;
  std::string Cort_Sett;
  std::string Cort_File;
  bool Cort_Logo = false;

  /// Whether the devices' settings come from the point of sale's.
  bool takesOver() const { return Orbis_Setting && !pointOfSaleUnreachable; }
};

/// Fixes the paths that hang on the main folder.
void setMainFolder(Settings& settings, std::string mainFolder);

/// Fixes the paths that hang on the point-of-sale folder.
void setPointOfSaleFolder(Settings& settings, std::string folder);

/// Loads the point-of-sale folder alone, for operations that run without the start-up.
void loadPointOfSaleFolder(Bridge& bridge);

/// Reads the flag of the take-overs alone; a text that is no truth value leaves what was there.
void readOrbisSetting(Bridge& bridge);

/// Loads every setting and shows it on the form. A value that cannot be converted leaves what was there; a display that
/// is switched off leaves its other settings and its port alone.
void CaricaImpostazioni(Bridge& bridge);

/// Saves the form into the settings file and loads it again. Fields that were emptied keep their old value in the file,
/// but for the point-of-sale folder; the active mark of a device that is not configured is saved as 0.
void cmdSalva_Click(Bridge& bridge);

}  // namespace tellaxis
