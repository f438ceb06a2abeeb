// tellaxis: the bridge with its window.
#include <wx/app.h>
#include <wx/log.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/commands/end_copy.h"
#include "app/commands/one_shot.h"
#include "app/failing_steps.h"
#include "app/second_copy.h"
#include "app/window_program.h"
#include "core/activity.h"
#include "platform/instance.h"
#include "platform/program.h"
#include "platform/system.h"
#include "platform/window_call.h"
#include "text/code_page.h"
#include "ui/native.h"

namespace {

using namespace tellaxis;

constexpr std::string_view program = "tellaxis";

constexpr const char* noDisplay =
    "non c'è uno schermo su cui aprire la finestra; senza schermo si usa tellaxisd, con le stesse opzioni";

/// Where the program was started from the desktop nobody reads its streams: then a message box says it.
void say(std::FILE* stream, const std::string& text) {
  if (std::fputs(text.c_str(), stream) < 0 || std::fflush(stream) != 0)
    wxSafeShowMessage("Tellaxis", wxString::FromUTF8(text.c_str()));
}

int complain(const std::string& text, int status) {
  say(stderr, std::string(program) + ": " + text + "\n");
  return status;
}

/// The toolkit's application: the window program lives as long as its loop.
class Application : public wxApp {
 public:
  Application(const WindowSurroundings& surroundings, const std::string& mainFolder, int interval)
      : surroundings_(surroundings), mainFolder_(mainFolder), interval_(interval) {}

  bool OnInit() override {
    SetAppName("tellaxis");
    ui::forgoSignsOfLife();
    window_ = std::make_unique<WindowProgram>(surroundings_, mainFolder_, interval_);
    return true;
  }

  int OnExit() override {
    window_.reset();
    return wxApp::OnExit();
  }

 private:
  const WindowSurroundings& surroundings_;
  const std::string& mainFolder_;
  int interval_;
  std::unique_ptr<WindowProgram> window_;
};

int showWindow(const WindowSurroundings& surroundings, const std::string& mainFolder, int interval) {
  wxApp::SetInstance(new Application(surroundings, mainFolder, interval));
  // The arguments have been read already; the toolkit sees the program's name alone.
  char name[] = "tellaxis";
  char* words[] = {name, nullptr};
  int count = 1;
  return wxEntry(count, words);
}

/// One operation, without a window: unlike the program without one it brings no console window to the screen.
int carryOut(const CommandLine& line, const std::string& mainFolder) {
  // A transfer that is asked to stop says in the settings file that it is over.
  std::optional<platform::StopRequest> stop;
  if (line.command == Command::ftp) stop.emplace();
  auto opened = platform::openSystem(line.system);
  if (const auto* error = std::get_if<platform::SystemError>(&opened)) return complain(error->message, statusUnusable);
  const auto sayResult = [](const CommandResult& result) {
    say(result.status == 0 || result.isReport ? stdout : stderr, result.text);
  };
  return runOnce(*std::get<std::unique_ptr<platform::System>>(opened), line, mainFolder, sayResult);
}

int run(const CommandLine& line) {
  const std::string& folder = line.system.mainFolder;
  const auto mainFolder = codePageFromUtf8(folder);
  if (!mainFolder)
    return complain("--main-folder " + folder + ": il nome ha caratteri che non si possono usare", statusUnusable);
  if (line.endsOther) return endOtherCopy(folder);
  if (line.command != Command::stay) return carryOut(line, *mainFolder);
  if (!ui::displayIsThere()) return complain(noDisplay, statusUnusable);

  platform::StopRequest stop;
  Activity activity;
  platform::SystemOptions options = line.system;
  FailingSteps failingSteps(activity, false, nullptr);
  options.alsoTold = &failingSteps;
  auto opened = platform::openSystem(options);
  if (const auto* error = std::get_if<platform::SystemError>(&opened)) return complain(error->message, statusUnusable);
  const auto lock = platform::lockMainFolder(folder);
  if (!lock && platform::callWindow(folder)) return 0;
  if (!lock) return complain(refusalOf(folder, "un'altra copia, senza finestra,"), statusSecondCopy);
  stop.heed(folder);
  const auto calls = platform::listenForWindowCalls(folder);

  const auto& system = std::get<std::unique_ptr<platform::System>>(opened);
  failingSteps.heed(system->options());
  const WindowSurroundings surroundings{*system, options, activity, stop, calls.get()};
  return showWindow(surroundings, *mainFolder, line.pollingInterval);
}

}  // namespace

int main(int count, char** words) {
  try {
    const std::vector<std::string> arguments = platform::programArguments(count, words);
    const auto read = readCommandLine(program, arguments);
    if (const auto* message = std::get_if<EndAtOnce>(&read)) {
      say(message->status == 0 ? stdout : stderr, message->text);
      return message->status;
    }
    return run(std::get<CommandLine>(read));
  } catch (const std::exception& failure) {
    return complain(std::string("errore interno: ") + failure.what(), 1);
  }
}
