// tellaxisd: the bridge without a window.
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/command_line.h"
#include "app/commands/end_copy.h"
#include "app/commands/one_shot.h"
#include "app/connected_devices.h"
#include "app/failing_steps.h"
#include "app/job_diary.h"
#include "app/job_metrics.h"
#include "app/resident.h"
#include "app/second_copy.h"
#include "app/signs_of_life.h"
#include "core/activity.h"
#include "core/bridge.h"
#include "core/paper.h"
#include "platform/instance.h"
#include "platform/program.h"
#include "platform/service_manager.h"
#include "platform/system.h"
#include "text/code_page.h"

namespace {

using namespace tellaxis;

constexpr std::string_view program = "tellaxisd";

int complain(const std::string& text, int status) {
  std::fputs((std::string(program) + ": " + text + "\n").c_str(), stderr);
  return status;
}

int end(const EndAtOnce& message) {
  std::fputs(message.text.c_str(), message.status == 0 ? stdout : stderr);
  return message.status;
}

void sayReady() {
  std::puts("pronto");
  std::fflush(stdout);
}

/// What a resident bridge is made of besides its devices.
struct Surroundings {
  platform::System& system;
  Activity& activity;
  platform::StopRequest& stop;
  platform::ServiceManager* manager;  ///< null where nobody asks how the service is
  bool jobsAreNoted;                  ///< somebody wants to know which job is under way, and which was the last
};

void serve(const Surroundings& around, const CommandLine& line, const std::string& mainFolder) {
  platform::StopRequest& stop = around.stop;
  const platform::Host& services = around.system.host();
  std::optional<LivingClock> clock;
  if (around.manager != nullptr) clock.emplace(services.clock, *around.manager);
  platform::Host host = clock ? services.with(*clock, services.dialogs, services.tray) : services;
  Bridge bridge(host, around.system.options());
  std::optional<ServiceReport> report;
  if (around.manager != nullptr) report.emplace(*around.manager, bridge, around.activity);
  bridge.stopRequested = [&stop, &report] {
    if (report) report->goesOn(stop.asked());
    return stop.asked();
  };
  std::unique_ptr<platform::JobNotices> notices;
  if (bridge.options.prompt) notices = around.system.openJobNotices([&stop] { stop.wake(); });
  if (notices && around.manager != nullptr)
    notices = std::make_unique<LivingNotices>(std::move(notices), *around.manager);
  bridge.notices = notices.get();
  ConnectedDevices devices(bridge);
  const auto paper = Paper::open(bridge, devices);
  bridge.paper = paper.get();
  NotedDevices noted(devices, around.activity, bridge);
  const auto metrics = JobMetrics::open(bridge, mainFolder, noted, around.activity);
  const auto diary = JobDiary::open(bridge, mainFolder, metrics ? metrics->devices() : noted, around.activity);
  const auto ready = [&] {
    if (diary) diary->started();
    if (metrics) metrics->started(diary.get());
    sayReady();
    if (report) report->ready();
  };
  Devices* polled = &devices;
  if (around.jobsAreNoted) polled = &noted;
  if (metrics) polled = &metrics->devices();
  if (diary) polled = &diary->devices();
  runResident(bridge, *polled, devices, mainFolder, line.pollingInterval, stop, ready, metrics.get());
}

int stay(const CommandLine& line, const std::string& mainFolder) {
  platform::StopRequest stop;
  Activity activity;
  const auto manager = platform::openServiceManager();
  FailingSteps failingSteps(activity, line.system.trace, manager.get());
  platform::SystemOptions options = line.system;
  options.trace = failingSteps.arePrinted();
  options.alsoTold = &failingSteps;
  auto opened = platform::openSystem(options);
  if (const auto* error = std::get_if<platform::SystemError>(&opened)) return complain(error->message, statusUnusable);
  const auto lock = platform::lockMainFolder(line.system.mainFolder);
  if (!lock) return complain(refusalOf(line.system.mainFolder, "un'altra copia"), statusSecondCopy);

  stop.heed(line.system.mainFolder);
  platform::System& system = *std::get<std::unique_ptr<platform::System>>(opened);
  failingSteps.heed(system.options());
  serve({system, activity, stop, manager.get(), manager != nullptr || failingSteps.areLogged()}, line, mainFolder);
  return 0;
}

void say(const CommandResult& result) {
  std::fputs(result.text.c_str(), result.status == 0 || result.isReport ? stdout : stderr);
}

/// Beside a copy that stays, or without one.
int carryOut(const CommandLine& line, const std::string& mainFolder) {
  // A transfer that is asked to stop says in the settings file that it is over.
  std::optional<platform::StopRequest> stop;
  if (line.command == Command::ftp) stop.emplace();
  auto opened = platform::openSystem(line.system);
  if (const auto* error = std::get_if<platform::SystemError>(&opened)) return complain(error->message, statusUnusable);
  return runOnce(*std::get<std::unique_ptr<platform::System>>(opened), line, mainFolder, say);
}

int run(const CommandLine& line) {
  const std::string& folder = line.system.mainFolder;
  const auto mainFolder = codePageFromUtf8(folder);
  if (!mainFolder)
    return complain("--main-folder " + folder + ": il nome ha caratteri che non si possono usare", statusUnusable);
  if (line.endsOther) return endOtherCopy(folder);
  return line.command == Command::stay ? stay(line, *mainFolder) : carryOut(line, *mainFolder);
}

}  // namespace

int main(int count, char** words) {
  try {
    const std::vector<std::string> arguments = platform::programArguments(count, words);
    const auto read = readCommandLine(program, arguments);
    if (const auto* message = std::get_if<EndAtOnce>(&read)) return end(*message);
    return run(std::get<CommandLine>(read));
  } catch (const std::exception& failure) {
    return complain(std::string("errore interno: ") + failure.what(), 1);
  }
}
