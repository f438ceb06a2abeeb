// Line settings: the fields of the device control block.
#include "platform/windows/serial/line_settings.h"

#include <cstddef>

namespace tellaxis::platform {

namespace {

constexpr BYTE parityNumbers[] = {NOPARITY, ODDPARITY, EVENPARITY, MARKPARITY, SPACEPARITY};
constexpr BYTE stopBitNumbers[] = {ONESTOPBIT, ONE5STOPBITS, TWOSTOPBITS};

}  // namespace

bool applyLineSettings(HANDLE device, const LineSettings& settings) {
  DCB state = {};
  state.DCBlength = sizeof state;
  if (!GetCommState(device, &state)) return false;
  state.BaudRate = static_cast<DWORD>(settings.baud);
  state.ByteSize = static_cast<BYTE>(settings.dataBits);
  state.Parity = parityNumbers[static_cast<std::size_t>(settings.parity)];
  state.StopBits = stopBitNumbers[static_cast<std::size_t>(settings.stopBits)];
  state.fBinary = TRUE;
  state.fParity = settings.parity != Parity::none;
  state.fOutxCtsFlow = settings.flowControl == FlowControl::cts;
  state.fOutxDsrFlow = FALSE;
  state.fDsrSensitivity = FALSE;
  state.fOutX = FALSE;
  state.fInX = FALSE;
  state.fErrorChar = FALSE;
  state.fNull = FALSE;
  state.fAbortOnError = FALSE;
  state.fDtrControl = DTR_CONTROL_ENABLE;
  state.fRtsControl = RTS_CONTROL_ENABLE;
  return SetCommState(device, &state) != 0;
}

}  // namespace tellaxis::platform
