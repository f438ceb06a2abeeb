// Fiscal printer: the driver's kind, program and files.
#include <algorithm>
#include <iterator>
#include <vector>

#include "check/devices/devices.h"
#include "check/waiting_jobs.h"
#include "check/words.h"
#include "fiscal/models.h"
#include "platform/locale.h"
#include "platform/processes/command_line.h"

namespace tellaxis {

namespace {

constexpr std::string_view logFolder = "c:\\Tellaxis";

void checkKind(const Settings& settings, HandOver handOver, Findings& findings) {
  if (handOver == HandOver::none)
    return findings.add(Code::driverKindUnknown,
                        "Il protocollo \"" + settings.MF_Prot + "\" (MF_Prot) non consegna scontrini.");
  const auto* const model = std::ranges::find(fiscalModels, std::string_view(settings.MF_type), &FiscalModel::type);
  // What is offered by no list has no model to choose.
  const bool offered = handOver != HandOver::fpMateFolder;
  if (offered && (model == std::end(fiscalModels) || model->protocol != settings.MF_Prot))
    findings.add(Code::driverKindMismatch, "Il modello \"" + settings.MF_type + "\" (MF_Type) e il protocollo \"" +
                                               settings.MF_Prot + "\" (MF_Prot) non vanno insieme.");
}

void checkInputFile(const CheckScene& scene, Findings& findings) {
  const std::string& file = scene.bridge.settings.MF_File;
  if (file.empty())
    return findings.add(Code::mfFileMissing, "Il file di ingresso del driver (MF_File) non \xE8 impostato.");
  const std::string folder = folderOf(file);
  if (folder.empty()) return;
  const platform::PathLook look = scene.inspection.look(folder);
  if (!look.isFolder)
    findings.add(Code::mfFileFolderMissing, "La cartella " + folder + " di MF_File (" + file + ") non c'\xE8.");
  else if (!look.mayWrite)
    findings.add(Code::mfFileFolderNotWritable,
                 "Nella cartella " + folder + " di MF_File (" + file + ") non si pu\xF2 scrivere.");
}

/// Every file that the command line may mean, in the order in which they are tried.
std::vector<std::string> programsTried(std::string_view commandLine) {
  std::vector<std::string> tried;
  for (const platform::CommandReading& reading : platform::readingsOf(commandLine))
    for (std::string& name : platform::fileNamesOf(reading.program)) tried.push_back(std::move(name));
  return tried;
}

void checkProgram(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  const platform::ProgramLook program = scene.inspection.program(settings.MF_Driver);
  const std::vector<std::string> tried = programsTried(settings.MF_Driver);
  if (tried.empty())
    findings.add(Code::driverMissing, "Il programma del driver (MF_Driver) non \xE8 impostato.");
  else if (program.file.empty())
    findings.add(Code::driverMissing, "Il programma del driver non c'\xE8. Cercato: " + listed(tried) + ".");
  else if (!program.executable)
    findings.add(Code::driverNotExecutable, "Il driver " + program.file + " non si pu\xF2 eseguire.");
  if (settings.MF_File_Output.empty())
    findings.add(Code::answerFileMissing, "Il file di risposta del driver (MF_File_Output) non \xE8 impostato.");
}

void checkFpMate(const CheckScene& scene, Findings& findings) {
  const std::string folder = scene.bridge.settings.pointOfSaleFolder + "\\Epson";
  if (!scene.inspection.look(folder).isFolder)
    findings.add(Code::fpMateFolderMissing, "La cartella " + folder + " in cui FPMate legge non c'\xE8.");
}

void checkWaits(const CheckScene& scene, HandOver handOver, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  const bool waits = handOver == HandOver::inputFile || handOver == HandOver::program;
  const auto delay = integerFrom(settings.MF_Ritardo, scene.bridge.host.locale.regional());
  if (waits && delay.value_or(0) > 0 && !scene.bridge.options.midnight)
    findings.add(
        Code::midnightHang,
        "Uno scontrino a cavallo della mezzanotte pu\xF2 fermare il ponte (MF_Ritardo, centesimi di secondo: " +
            textOf(scene, settings.MF_Ritardo) + ").");
}

}  // namespace

void checkFiscal(const CheckScene& scene, Findings& findings) {
  const Settings& settings = scene.bridge.settings;
  if (!settings.MF_Active) return findings.add(Code::off, "Spento (MF_Active).");
  const HandOver handOver = handOverOf(settings.MF_Prot);
  std::string looked = "Protocollo " + shown(settings.MF_Prot) + ", file " + shown(settings.MF_File);
  if (handOver == HandOver::program)
    looked += ", driver " + shown(settings.MF_Driver) + ", risposta " + shown(settings.MF_File_Output);
  findings.add(Code::lookedAt, looked + ".");
  checkKind(settings, handOver, findings);
  checkInputFile(scene, findings);
  if (handOver == HandOver::program) checkProgram(scene, findings);
  if (handOver == HandOver::fpMateFolder) checkFpMate(scene, findings);
  checkWaits(scene, handOver, findings);
  if (settings.MF_ChkLog && !scene.inspection.look(logFolder).isFolder)
    findings.add(Code::logFolderMissing,
                 "Il registro \xE8 acceso (MF_ChkLog) e la cartella " + std::string(logFolder) + " non c'\xE8.");
  checkDropFolder(scene, findings, settings.mainFolder + "\\Orbis", "MF_Vuoto");
}

}  // namespace tellaxis
