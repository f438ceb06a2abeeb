// Serial ports of Windows: CreateFile, SetupComm, SetCommState and WriteFile.
#include "platform/windows/serial_port.h"

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

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

enum class Written { all, stuck, gone };

Written writeAll(HANDLE device, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!WriteFile(device, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) && written == 0)
      return Written::gone;
    if (written == 0) {
      PurgeComm(device, PURGE_TXABORT | PURGE_TXCLEAR);
      return Written::stuck;
    }
    bytes.remove_prefix(written);
  }
  return Written::all;
}

/// An open line outlives its device, so that an adapter may be pulled out and put back.
class ComLine : public SerialPort {
 public:
  explicit ComLine(Trace& trace) : trace_(trace) {}

  bool open(int number, const LineSettings& settings, const LineBuffers& buffers) override {
    if (open_) return fail("open", "\xE8 gi\xE0 aperta");
    name_ = "COM" + std::to_string(number);
    settings_ = settings;
    buffers_ = buffers;
    open_ = openDevice();
    return open_;
  }

  bool isOpen() const override { return open_; }

  bool configure(const LineSettings& settings) override {
    if (!open_) return fail("configure", closed);
    if (device_ && !applySettings(device_.get(), settings)) return fail("configure");
    settings_ = settings;
    return true;
  }

  bool write(std::string_view bytes) override {
    if (!open_) return fail("write", closed);
    Written written = device_ ? writeAll(device_.get(), bytes) : Written::gone;
    if (written == Written::gone && openDevice()) written = writeAll(device_.get(), bytes);
    if (written == Written::stuck) return fail("write", "la periferica non accetta dati");
    return written == Written::all || fail("write", "la periferica non c'\xE8 pi\xF9");
  }

  bool close() override {
    if (!open_) return fail("close", closed);
    device_.reset();
    open_ = false;
    return true;
  }

 private:
  static constexpr std::string_view closed = "la porta \xE8 chiusa";

  bool openDevice() {
    // A device that went away keeps its name as long as it is held.
    device_.reset();
    UniqueHandle device = owned(CreateFileW(wide("\\\\.\\" + name_).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!device) return fail("open");
    // The sizes are a wish that a driver may turn down; the line works all the same.
    if (!SetupComm(device.get(), static_cast<DWORD>(buffers_.input), static_cast<DWORD>(buffers_.output)))
      fail("SetupComm");
    if (!applySettings(device.get(), settings_) || !applyTimeouts(device.get())) return fail("open");
    device_ = std::move(device);
    return true;
  }

  bool fail(std::string_view operation) { return failed(trace_, operation, name_); }
  bool fail(std::string_view operation, std::string_view reason) { return failed(trace_, operation, name_, reason); }

  Trace& trace_;
  std::string name_ = "COM";
  LineSettings settings_;
  LineBuffers buffers_;
  bool open_ = false;
  UniqueHandle device_;
};

}  // namespace

std::unique_ptr<SerialPort> WindowsSerialPorts::create() { return std::make_unique<ComLine>(trace_); }

}  // namespace tellaxis::platform
