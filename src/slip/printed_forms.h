// Printed forms: how far the slip file that is there has been printed.
#pragma once

#include <string>

#include "core/bridge.h"
#include "platform/files.h"

namespace tellaxis {

/// While the file stays the same and is printed on the same printer, its forms come out once, whatever fails between.
struct PrintedForms {
  platform::FileIdentity file;
  std::string printer;  ///< `RF_Stampante`
  int count = 0;        ///< documents that were ended, from the first on
  bool all = false;
};

}  // namespace tellaxis
