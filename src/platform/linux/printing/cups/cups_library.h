// CUPS library: what is loaded when the computer's queues are first needed.
#pragma once

#include "platform/linux/printing/cups/cups_queues.h"

namespace tellaxis::platform {

/// The operations of the library.
struct CupsLibrary {
  decltype(&listCupsQueues) list;
  decltype(&sendCupsJob) send;
  decltype(&statusOfCupsQueue) status;
};

/// Name of the library's file and of the one function that it shows.
inline constexpr const char* cupsLibraryFile = "libtellaxis_cups.so";
inline constexpr const char* cupsLibraryEntry = "tellaxisCupsLibrary";

}  // namespace tellaxis::platform

extern "C" const tellaxis::platform::CupsLibrary* tellaxisCupsLibrary();
