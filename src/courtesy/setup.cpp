// Setup: the take-over, one row for each model code.
#include "courtesy/setup.h"

#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "core/ini/ini.h"
#include "core/ini/values.h"
#include "courtesy/printer_types.h"
#include "platform/locale.h"
#include "platform/printers.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

constexpr std::string_view usualLogoFile = "c:\\Meridia\\LogoCassa.bmp";
constexpr std::string_view usualLine = "9600,N,8,1";

enum class LogoFile : std::uint8_t { leave, empty, keepOrUsual };
enum class Port : std::uint8_t { takeOver, empty };
enum class Logo : std::uint8_t { off, keepOrOff };

/// What a model code writes. A row without a code stands for every other code.
struct TakeOver {
  std::optional<std::int16_t> code;
  std::string_view printerType;  ///< none: as the user chose it
  LogoFile logoFile = LogoFile::leave;
  Port port = Port::takeOver;
  bool lineSettings = false;  ///< taken over where the port is
  Logo logo = Logo::off;
};

constexpr TakeOver takeOvers[] = {
    {.code = 28, .printerType = courtesy_type::olivetti, .logoFile = LogoFile::empty},
    {.code = 66, .printerType = courtesy_type::samsung, .logoFile = LogoFile::keepOrUsual, .logo = Logo::keepOrOff},
    {.code = 108, .lineSettings = true, .logo = Logo::keepOrOff},
    {.code = 111, .lineSettings = true, .logo = Logo::keepOrOff},
    {.printerType = courtesy_type::notPresent, .logoFile = LogoFile::empty, .port = Port::empty},
};

const TakeOver& takeOverOf(std::int16_t code) {
  for (const TakeOver& row : takeOvers)
    if (!row.code || *row.code == code) return row;
  return std::end(takeOvers)[-1];
}

/// Writes of one take-over, in the order of its keys.
class Writer {
 public:
  explicit Writer(Bridge& bridge) : host_(bridge.host), settings_(bridge.settings) {}

  void write(const TakeOver& row) {
    store("CORT_Printer", std::string(row.printerType));
    writeLogoFile(row.logoFile);
    if (row.port == Port::empty)
      store("CORT_Com", std::string());
    else
      takeOverPort(row.lineSettings);
    store("CORT_Logo", row.logo == Logo::off ? Value(no) : own("CORT_Logo", no));
  }

  Value local(std::string_view key, const Value& defaultValue) {
    return LeggiImpostazione(host_, key, defaultValue, settings_.pointOfSaleSettingsFile);
  }

 private:
  void writeLogoFile(LogoFile rule) {
    if (rule == LogoFile::empty) store("CORT_File", std::string());
    if (rule == LogoFile::keepOrUsual) store("CORT_File", own("CORT_File", std::string(usualLogoFile)));
  }

  void takeOverPort(bool withLineSettings) {
    const Value port = local("BANCO_DS_STAMPANTE_C", std::string());
    store("CORT_COM", port);
    if (withLineSettings && !IsVuoto(port)) store("CORT_Sett", local("BANCO_DS_STAMPANTE_P", std::string(usualLine)));
  }

  Value own(std::string_view key, const Value& defaultValue) {
    return LeggiImpostazione(host_, key, defaultValue, settings_.settingsFile);
  }
  void store(std::string_view key, const Value& value) {
    ScriviImpostazione(host_, key, value, settings_.settingsFile);
  }

  platform::Host& host_;
  const Settings& settings_;
};

}  // namespace

void Cort_StartUP_Valori(Bridge& bridge) {
  for (const CourtesyPrinterType& type : courtesyPrinterTypes) bridge.form.Cort_Printer.List.emplace_back(type.name);
}

void Cort_StartUP_Orbis(Bridge& bridge) {
  Writer writer(bridge);
  const Value model = writer.local("BANCO_DS_STAMPANTE", Null{});
  if (IsVuoto(model)) return;
  const auto& regional = bridge.host.locale.regional();
  if (const auto code = integerFrom(model, regional))
    writer.write(takeOverOf(*code));
  else
    bridge.host.trace.failed("Cort_StartUP_Orbis", textOf(model, regional), "non \xE8 un codice di stampante");
}

void Cort_Printer_Change(Bridge& bridge) {
  const auto named = platform::findPrinterNamed(bridge.host.Printer, bridge.form.Cort_Printer.Text);
  if (named.index) bridge.form.Cort_COM.Text = named.printer.Port;
}

}  // namespace tellaxis
