// CUPS library: its one visible function.
#include "platform/linux/printing/cups/cups_library.h"

const tellaxis::platform::CupsLibrary* tellaxisCupsLibrary() {
  static constexpr tellaxis::platform::CupsLibrary library{
      &tellaxis::platform::listCupsQueues, &tellaxis::platform::sendCupsJob, &tellaxis::platform::statusOfCupsQueue};
  return &library;
}
