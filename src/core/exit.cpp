// Exit: asking first, then taking the form and its icon away.
#include "core/exit.h"

#include "core/application.h"
#include "platform/dialogs.h"

namespace tellaxis {

void Esci_Click(Bridge& bridge, Window& form) {
  SerialControl& port = bridge.form.MSComm1;
  if (port.PortOpen()) port.PortOpen(false);
  const auto answer = bridge.host.dialogs.show("Chiudere il programma", applicationTitle, platform::Buttons::yesNo);
  if (answer == platform::Answer::yes) form.Unload();
}

void Form_Unload(Bridge& bridge, TrayIcon& icon, const Window& form) { IconaRimuovi(bridge, icon, form); }

}  // namespace tellaxis
