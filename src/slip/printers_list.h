// Printers list: the form that shows every installed printer with its port.
#pragma once

#include "core/form/main_form.h"
#include "platform/host.h"

namespace tellaxis {

struct fStampa_Porte {
  TextBox txListaStampanti;
};

/// Appends an entry for each installed printer.
void Form_Load(platform::Host& host, fStampa_Porte& form);

}  // namespace tellaxis
