// Setup: list entries and settings from the table of models.
#include "fiscal/setup.h"

#include <algorithm>
#include <string>

#include "core/ini/ini.h"
#include "fiscal/models.h"

namespace tellaxis {

namespace {

constexpr std::string_view noPrinterCode = "0";
constexpr const FiscalModel& noPrinter = *std::ranges::find(fiscalModels, noPrinterCode, &FiscalModel::code);

/// Written as driver kind where there is no fiscal printer; no list offers it and no job is dispatched on it.
constexpr std::string_view noProtocol = "Non Presente";

std::string driverInputFile(const Settings& settings) { return settings.pointOfSaleFolder + "\\Casio\\CAS.txt"; }

bool isOffered(const FiscalModel& model) { return !model.type.empty(); }

/// The printer that the point-of-sale application means by `code`, or null.
const FiscalModel* offeredModel(std::string_view code) {
  for (const FiscalModel& model : fiscalModels)
    if (isOffered(model) && model.handOver != HandOver::none && model.code == code) return &model;
  return nullptr;
}

/// Reads from the point-of-sale settings and writes into our own.
class TakeOver {
 public:
  explicit TakeOver(Bridge& bridge) : bridge_(bridge) {}

  std::string raw(std::string_view key, const std::string& otherwise) const {
    return LeggiIni(bridge_.host, rawSection, key, otherwise, bridge_.settings.pointOfSaleSettingsFile);
  }
  Value typed(std::string_view key, const Value& otherwise) const {
    return LeggiImpostazione(bridge_.host, key, otherwise, bridge_.settings.pointOfSaleSettingsFile);
  }
  void write(std::string_view key, const Value& value) const {
    ScriviImpostazione(bridge_.host, key, value, bridge_.settings.settingsFile);
  }
  void writeModel(std::int16_t active, std::string_view type, std::string_view protocol) const {
    write("MF_Active", active);
    write("MF_Type", std::string(type));
    write("MF_Prot", std::string(protocol));
  }

 private:
  Bridge& bridge_;
};

void takeOverInputFileModel(const Bridge& bridge, const TakeOver& settings) {
  settings.write("MF_COM", settings.typed("CommPre", bridge.form.MF_Com.Text));
  settings.write("MF_Parametri", settings.typed("CF_SETTAGGIO", bridge.form.MF_Param.Text));
  settings.write("MF_Ritardo", settings.typed("Delay", Null{}));
  settings.write("MF_File", driverInputFile(bridge.settings));
  settings.write("MF_Driver", Null{});
}

void takeOverProgramModel(const Bridge& bridge, const TakeOver& settings, std::string_view proposedDriver) {
  settings.write("MF_COM", settings.raw("CommPre", bridge.form.MF_Com.Text));
  settings.write("MF_Parametri", settings.raw("CF_SETTAGGIO", bridge.form.MF_Param.Text));
  settings.write("MF_Ritardo", settings.typed("Delay", Null{}));
  settings.write("MF_Driver", settings.typed("MF_FILE_DRIVER", std::string(proposedDriver)));
}

/// Blank values are not written, so what was configured by hand is still there when a printer comes back.
void takeOverNoPrinter(const TakeOver& settings) {
  settings.writeModel(no, noPrinter.type, noProtocol);
  for (const std::string_view key : {"MF_File", "MF_COM", "MF_Parametri", "MF_Ritardo", "MF_Driver"})
    settings.write(key, Null{});
}

}  // namespace

void MF_StartUP_Valori(Bridge& bridge) {
  for (const FiscalModel& model : fiscalModels) {
    if (!isOffered(model)) continue;
    bridge.form.MF_Type.List.emplace_back(model.type);
    bridge.form.MF_Protocol.List.emplace_back(model.protocol);
  }
  bridge.form.MF_File.Text = driverInputFile(bridge.settings);
  bridge.form.MF_chkLog.Value = 0;
}

void MF_StartUP_Orbis(Bridge& bridge) {
  if (!bridge.settings.takesOver()) return;
  const TakeOver settings(bridge);
  const FiscalModel* model = offeredModel(settings.raw("MisPre", std::string(noPrinterCode)));
  if (model == nullptr) return takeOverNoPrinter(settings);
  settings.writeModel(yes, model->type, model->protocol);
  if (model->handOver == HandOver::inputFile)
    takeOverInputFileModel(bridge, settings);
  else
    takeOverProgramModel(bridge, settings, model->defaultDriver);
}

}  // namespace tellaxis
