// Fiscal job: the hand-overs to driver input files, driver programs and the FPMate folder.
#include "fiscal/job.h"

#include <chrono>
#include <cstdint>
#include <string>

#include "core/attesa.h"
#include "core/ini/values.h"
#include "core/prompt.h"
#include "fiscal/buffer.h"
#include "fiscal/log.h"
#include "fiscal/models.h"
#include "platform/files.h"
#include "platform/locale.h"
#include "platform/processes.h"
#include "platform/trace.h"

namespace tellaxis {

namespace {

constexpr std::string_view fiscalLog = "c:\\Tellaxis\\MF.log";

/// A job of this name is handed over without the pause before it.
constexpr std::string_view withoutPause = "DLY_ZIP.TXT";

constexpr std::int16_t busyAttempts = 5;
constexpr std::int16_t answerAttempts = 101;

void log(Bridge& bridge, std::string_view message) {
  if (bridge.settings.MF_ChkLog) ScriviLog(bridge.host, fiscalLog, message);
}

void wait(Bridge& bridge) { Attesa(bridge, bridge.settings.MF_Ritardo, true); }

/// The wait for a driver's answer: where jobs are taken promptly it ends with the answer.
void waitForAnswer(Bridge& bridge) {
  if (bridge.notices == nullptr) return wait(bridge);
  const auto hundredths = integerFrom(bridge.settings.MF_Ritardo, bridge.host.locale.regional());
  waitForFile(bridge, bridge.settings.MF_File_Output, std::chrono::milliseconds(hundredths.value_or(0) * 10));
}

void handToInputFile(Bridge& bridge, std::string_view jobFile) {
  const Settings& settings = bridge.settings;
  platform::Files& files = bridge.host.files;
  for (std::int16_t attempts = 0; files.exists(settings.MF_File); ++attempts) {
    if (attempts > busyAttempts) {
      bridge.fiscalOutcome = FiscalOutcome::givenUp;
      log(bridge, "Invio file annullato: " + std::string(jobFile));
      bridge.host.trace.failed("invio", settings.MF_File, "il driver non ha preso lo scontrino precedente");
      return;
    }
    log(bridge, "Loop in attesa di liberare " + settings.MF_File);
    wait(bridge);
  }
  log(bridge, "Invio file: " + std::string(jobFile));
  if (!jobFile.ends_with(withoutPause)) wait(bridge);
  if (files.copy(jobFile, settings.MF_File)) bridge.fiscalOutcome = FiscalOutcome::delivered;
}

void handToFpMateFolder(Bridge& bridge) {
  const Settings& settings = bridge.settings;
  const std::string folder = settings.pointOfSaleFolder + "\\Epson";
  constexpr std::string_view name = "Scontr.xml";
  if (truthFrom(settings.MF_Buffer, bridge.host.locale.regional()).value_or(false)) {
    if (MF_SvuotaBuffer(bridge, folder, name)) bridge.fiscalOutcome = FiscalOutcome::delivered;
    return;
  }
  if (bridge.host.files.copy(settings.MF_File, folder + "\\" + std::string(name)))
    bridge.fiscalOutcome = FiscalOutcome::delivered;
  bridge.host.files.remove(settings.MF_File);
}

void handToProgram(Bridge& bridge, std::string_view jobFile) {
  const Settings& settings = bridge.settings;
  platform::Files& files = bridge.host.files;
  files.copy(jobFile, settings.MF_File);
  bridge.host.processes.start(settings.MF_Driver, platform::WindowStyle::minimisedWithoutFocus);

  bridge.fiscalOutcome = FiscalOutcome::unanswered;
  const std::string& answer = settings.MF_File_Output;
  std::int16_t attempts = 0;
  waitForAnswer(bridge);
  while (!files.exists(answer) && attempts < answerAttempts) {
    ++attempts;
    waitForAnswer(bridge);
  }
  if (!files.exists(answer) && attempts >= answerAttempts) {
    files.remove(settings.MF_File);
    bridge.host.trace.failed("attesa", answer, "il driver non ha risposto");
    log(bridge, "File scontrino: " + std::string(jobFile) + " - non ha generato file di output " + answer);
  } else if (files.exists(answer)) {
    bridge.fiscalOutcome = FiscalOutcome::confirmed;
    files.remove(answer);
  }
}

}  // namespace

void MF_Invia(Bridge& bridge, std::string_view jobFile) {
  bridge.fiscalOutcome = FiscalOutcome::notHandedOver;
  switch (handOverOf(bridge.settings.MF_Prot)) {
    case HandOver::inputFile: return handToInputFile(bridge, jobFile);
    case HandOver::fpMateFolder: return handToFpMateFolder(bridge);
    case HandOver::program: return handToProgram(bridge, jobFile);
    case HandOver::none: return;
  }
}

}  // namespace tellaxis
