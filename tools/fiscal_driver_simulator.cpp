// Fiscal driver simulator: behaves like the makers' driver programs, so that receipts can be tried without a printer.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

#include "arguments.h"

namespace {

using tellaxis::tools::Argument;
using tellaxis::tools::into;
using tellaxis::tools::numberInto;
using tellaxis::tools::readArguments;

namespace fs = std::filesystem;
using std::chrono::milliseconds;

constexpr std::string_view help = R"(Uso: fiscal_driver_simulator program --input FILE --output FILE [opzioni]
     fiscal_driver_simulator watch --input FILE [opzioni]

  program   come i driver che il ponte avvia a ogni scontrino: prende il file di ingresso,
            lavora, scrive il file di uscita e termina
  watch     come i driver sempre attivi: aspetta il file di ingresso e lo consuma, fino a Ctrl-C

Opzioni:
  --input FILE         file di ingresso del driver (per FPMate: Scontr.xml)
  --output FILE        file di uscita, scritto a lavoro finito
  --work MS            durata del lavoro in millisecondi (di norma 100)
  --receipts CARTELLA  conserva qui una copia numerata di ogni scontrino ricevuto
  --never              non risponde mai: il file di ingresso resta dov'è
  --dies               termina con errore a metà del lavoro, senza file di uscita
  --count N            watch: termina dopo N scontrini
)";

/// What the driver was told to be.
struct Driver {
  fs::path input;
  fs::path output;
  std::optional<fs::path> receipts;
  milliseconds work{100};
  bool never = false;
  bool dies = false;
  int stopAfter = 0;  ///< receipts; 0 is never
};

constexpr milliseconds watchInterval{10};
constexpr int statusDied = 1;
constexpr int statusUnusable = 2;
constexpr int statusNoInput = 3;

volatile std::sig_atomic_t stopRequested = 0;

extern "C" void requestStop(int /*signal*/) { stopRequested = 1; }

/// Copies the receipt to the lowest free number of the folder and says so.
void keepReceipt(const Driver& driver) {
  if (!driver.receipts) return;
  std::error_code failure;
  fs::create_directories(*driver.receipts, failure);
  for (int number = 1;; ++number) {
    const fs::path copy = *driver.receipts / (std::to_string(10'000 + number).substr(1) + ".txt");
    if (fs::exists(copy, failure)) continue;
    // Under its own name a copy that has only been begun is closed to every reader but root.
    const fs::path unfinished = copy.string() + ".tmp";
    if (fs::copy_file(driver.input, unfinished, failure)) fs::rename(unfinished, copy, failure);
    if (failure) std::fprintf(stderr, "copia dello scontrino non riuscita: %s\n", failure.message().c_str());
    return;
  }
}

/// The answer appears whole: it is written beside its place and renamed.
bool writeAnswer(const fs::path& output) {
  const fs::path unfinished = output.string() + ".tmp";
  {
    std::ofstream file(unfinished, std::ios::binary);
    file << "OK\r\n";
    if (!file.flush()) return false;
  }
  std::error_code failure;
  fs::rename(unfinished, output, failure);
  return !failure;
}

int runAsProgram(const Driver& driver) {
  std::error_code failure;
  if (!fs::exists(driver.input, failure)) {
    std::fprintf(stderr, "manca il file di ingresso %s\n", driver.input.string().c_str());
    return statusNoInput;
  }
  keepReceipt(driver);
  if (driver.never) return 0;
  std::this_thread::sleep_for(driver.dies ? driver.work / 2 : driver.work);
  if (driver.dies) return statusDied;
  fs::remove(driver.input, failure);
  return writeAnswer(driver.output) ? 0 : statusUnusable;
}

int watch(const Driver& driver) {
  std::error_code failure;
  for (int taken = 0; stopRequested == 0 && (driver.stopAfter == 0 || taken < driver.stopAfter);) {
    std::this_thread::sleep_for(watchInterval);
    if (driver.never || !fs::is_regular_file(driver.input, failure)) continue;
    std::this_thread::sleep_for(driver.work);
    if (driver.dies) return statusDied;
    keepReceipt(driver);
    fs::remove(driver.input, failure);
    if (!driver.output.empty()) writeAnswer(driver.output);
    ++taken;
  }
  return 0;
}

}  // namespace

int main(int count, char** words) {
  Driver driver;
  int work = 100;
  bool showHelp = false;
  const Argument known[] = {
      {"help", false, into(showHelp)},           {"input", true, into(driver.input)},
      {"output", true, into(driver.output)},     {"work", true, numberInto(work, 0)},
      {"receipts", true, into(driver.receipts)}, {"never", false, into(driver.never)},
      {"dies", false, into(driver.dies)},        {"count", true, numberInto(driver.stopAfter, 0)}};
  const auto others = readArguments(count, words, known);
  if (!others || others->size() > 1) {
    std::fputs("argomenti non validi; --help li elenca\n", stderr);
    return statusUnusable;
  }
  if (showHelp) {
    std::fputs(std::string(help).c_str(), stdout);
    return 0;
  }
  driver.work = milliseconds(work);
  const std::string kind = others->empty() ? "" : others->front();
  const bool asProgram = kind == "program" && !driver.output.empty();
  if (driver.input.empty() || (!asProgram && kind != "watch")) {
    std::fputs(std::string(help).c_str(), stderr);
    return statusUnusable;
  }
  std::signal(SIGINT, requestStop);
  std::signal(SIGTERM, requestStop);
  return asProgram ? runAsProgram(driver) : watch(driver);
}
