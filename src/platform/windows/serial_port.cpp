// Serial ports of Windows: CreateFile, SetupComm, SetCommState and WriteFile.
#include "platform/windows/serial_port.h"

#include "platform/windows/native.h"

namespace tellaxis::platform::windows {

namespace {

constexpr DWORD writeTimeout = 2000;  // milliseconds

constexpr BYTE parityNumbers[] = {NOPARITY, ODDPARITY, EVENPARITY, MARKPARITY, SPACEPARITY};
constexpr BYTE stopBitNumbers[] = {ONESTOPBIT, ONE5STOPBITS, TWOSTOPBITS};

/// The device's state with our settings in it: no handshake, both of our own lines raised.
bool applySettings(HANDLE device, const LineSettings& settings) {
  DCB state = {};
  state.DCBlength = sizeof state;
  if (!GetCommState(device, &state)) return false;
  state.BaudRate = static_cast<DWORD>(settings.baud);
  state.ByteSize = static_cast<BYTE>(settings.dataBits);
  state.Parity = parityNumbers[static_cast<std::size_t>(settings.parity)];
  state.StopBits = stopBitNumbers[static_cast<std::size_t>(settings.stopBits)];
  state.fBinary = TRUE;
  state.fParity = settings.parity != Parity::none;
  state.fOutxCtsFlow = FALSE;
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

bool applyTimeouts(HANDLE device) {
  COMMTIMEOUTS timeouts = {};
  timeouts.ReadIntervalTimeout = MAXDWORD;
  timeouts.WriteTotalTimeoutConstant = writeTimeout;
  return SetCommTimeouts(device, &timeouts) != 0;
}

class ComLine : public SerialPort {
 public:
  explicit ComLine(Trace& trace) : trace_(trace) {}

  bool open(int number, const LineSettings& settings, const LineBuffers& buffers) override {
    if (device_) return fail("open", "\xE8 gi\xE0 aperta");
    name_ = "COM" + std::to_string(number);
    UniqueHandle device = owned(CreateFileW(wide("\\\\.\\" + name_).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!device) return fail("open");
    // The sizes are a wish that a driver may turn down; the line works all the same.
    if (!SetupComm(device.get(), static_cast<DWORD>(buffers.input), static_cast<DWORD>(buffers.output)))
      fail("SetupComm");
    if (!applySettings(device.get(), settings) || !applyTimeouts(device.get())) return fail("open");
    device_ = std::move(device);
    return true;
  }

  bool isOpen() const override { return device_ != nullptr; }

  bool configure(const LineSettings& settings) override {
    if (!device_) return fail("configure", closed);
    return applySettings(device_.get(), settings) || fail("configure");
  }

  bool write(std::string_view bytes) override {
    if (!device_) return fail("write", closed);
    while (!bytes.empty()) {
      DWORD written = 0;
      if (!WriteFile(device_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) && written == 0)
        return fail("write");
      if (written == 0) {
        PurgeComm(device_.get(), PURGE_TXABORT | PURGE_TXCLEAR);
        return fail("write", "la periferica non accetta dati");
      }
      bytes.remove_prefix(written);
    }
    return true;
  }

  bool close() override {
    if (!device_) return fail("close", closed);
    device_.reset();
    return true;
  }

 private:
  static constexpr std::string_view closed = "la porta \xE8 chiusa";

  bool fail(std::string_view operation) { return failed(trace_, operation, name_); }
  bool fail(std::string_view operation, std::string_view reason) { return failed(trace_, operation, name_, reason); }

  Trace& trace_;
  std::string name_ = "COM";
  UniqueHandle device_;
};

}  // namespace

std::unique_ptr<SerialPort> SerialPorts::create() { return std::make_unique<ComLine>(trace_); }

}  // namespace tellaxis::platform::windows
