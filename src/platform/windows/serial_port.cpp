// Serial ports of Windows: CreateFile, SetupComm, SetCommState and WriteFile.
#include "platform/windows/serial_port.h"

#include "platform/windows/kernel/native.h"
#include "platform/windows/serial/line_settings.h"

namespace tellaxis::platform {

namespace {

using std::chrono::milliseconds;

constexpr DWORD drainPause = 5;  // milliseconds

class ComDevice : public SerialDevice {
 public:
  explicit ComDevice(UniqueHandle device) : device_(std::move(device)) {}

  bool configure(const LineSettings& settings, std::string& reason) override {
    if (applyLineSettings(device_.get(), settings)) return true;
    reason = systemReason(GetLastError());
    return false;
  }

  WriteResult write(std::string_view bytes, milliseconds limit) override {
    limitWrites(limit);
    while (!bytes.empty()) {
      DWORD written = 0;
      if (!WriteFile(device_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) && written == 0)
        return WriteResult::gone;
      if (written == 0) {
        PurgeComm(device_.get(), PURGE_TXABORT | PURGE_TXCLEAR);
        return WriteResult::stuck;
      }
      bytes.remove_prefix(written);
    }
    return WriteResult::done;
  }

  /// Some drivers cut off what they still hold when the handle is closed.
  void drain(milliseconds limit) override {
    const DWORD begun = GetTickCount();
    while (bytesWaiting() > 0 && GetTickCount() - begun < static_cast<DWORD>(limit.count())) Sleep(drainPause);
  }

  /// False, with the system's last error, when the device refuses.
  bool limitWrites(milliseconds limit) {
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.WriteTotalTimeoutConstant = static_cast<DWORD>(limit.count());
    return SetCommTimeouts(device_.get(), &timeouts) != 0;
  }

 private:
  DWORD bytesWaiting() {
    DWORD errors = 0;
    COMSTAT state = {};
    return ClearCommError(device_.get(), &errors, &state) ? state.cbOutQue : 0;
  }

  UniqueHandle device_;
};

struct KeyCloser {
  void operator()(HKEY key) const { RegCloseKey(key); }
};

/// The number of "COM3"; 0 for another name.
int numberOf(std::wstring_view name) {
  if (name.size() < 4 || name.size() > 6 || name.substr(0, 3) != L"COM") return 0;
  int number = 0;
  for (const wchar_t digit : name.substr(3)) {
    if (digit < L'0' || digit > L'9') return 0;
    number = number * 10 + (digit - L'0');
  }
  return number;
}

}  // namespace

std::unique_ptr<SerialPort> WindowsSerialPorts::create() {
  SerialDevices& devices = *this;
  return std::make_unique<SerialLine>(devices, trace_);
}

std::vector<SerialPortInfo> WindowsSerialPorts::list() {
  HKEY opened = nullptr;
  const wchar_t* const devices = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";
  // Where there is no line there is no such key.
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, devices, 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return {};
  const std::unique_ptr<HKEY__, KeyCloser> key(opened);
  std::vector<SerialPortInfo> ports;
  for (DWORD index = 0;; ++index) {
    wchar_t driver[256];
    wchar_t port[64] = {};
    DWORD driverLength = 256;
    DWORD bytes = sizeof port - sizeof(wchar_t);
    DWORD type = 0;
    const LONG result =
        RegEnumValueW(key.get(), index, driver, &driverLength, nullptr, &type, reinterpret_cast<BYTE*>(port), &bytes);
    if (result == ERROR_NO_MORE_ITEMS) return ports;
    if (result != ERROR_SUCCESS) {
      failed(trace_, "list", "SERIALCOMM", systemReason(static_cast<DWORD>(result)));
      return ports;
    }
    if (type == REG_SZ)
      ports.push_back(
          {.number = numberOf(port), .device = narrowForReading(port), .description = narrowForReading(driver)});
  }
}

std::string WindowsSerialPorts::nameOf(int number) const { return "COM" + (number > 0 ? std::to_string(number) : ""); }

std::unique_ptr<SerialDevice> WindowsSerialPorts::open(int number, const LineSettings& settings,
                                                       const LineBuffers& buffers, std::string& reason) {
  const std::string name = nameOf(number);
  UniqueHandle handle = owned(CreateFileW(wide("\\\\.\\" + name).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!handle) {
    reason = systemReason(GetLastError());
    return nullptr;
  }
  // A driver may turn the sizes down; the line works all the same.
  if (!SetupComm(handle.get(), static_cast<DWORD>(buffers.input), static_cast<DWORD>(buffers.output)))
    failed(trace_, "SetupComm", name);
  auto device = std::make_unique<ComDevice>(std::move(handle));
  if (!device->configure(settings, reason)) return nullptr;
  if (device->limitWrites(milliseconds(2000))) return device;
  reason = systemReason(GetLastError());
  return nullptr;
}

}  // namespace tellaxis::platform
