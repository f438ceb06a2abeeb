// Processes: starting in a session of their own, waiting on process descriptors.
#include "platform/linux/processes.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>
#include <vector>

#include "platform/linux/kernel/reason.h"
#include "platform/linux/processes/program_file.h"
#include "platform/processes/command_line.h"

namespace tellaxis::platform {

namespace {

/// Runs the lines of the file $1 one after the other, in one shell, whatever becomes of each; $2 is a carriage return.
constexpr char batchRunner[] = R"(
tellaxis_file=$1 tellaxis_cr=$2
shift 2
while IFS= read -r tellaxis_line <&3 || [ -n "$tellaxis_line" ]; do
  tellaxis_line=${tellaxis_line%"$tellaxis_cr"}
  tellaxis_line=${tellaxis_line#@}
  case $tellaxis_line in
    [Ee][Cc][Hh][Oo]\ [Oo][Ff][Ff] | [Rr][Ee][Mm] | [Rr][Ee][Mm]\ * | ::*) continue ;;
  esac
  command eval "$tellaxis_line" 3<&-
done 3<"$tellaxis_file"
)";

/// Handles are multiples of 4, as the numbers 0 and 1 have a meaning to those who use them.
constexpr ProcessHandle handleStep = 4;

/// The words that the program sees; the first is its own name. A batch file is carried out by the shell.
std::vector<std::string> wordsFor(const std::string& program, std::string_view arguments) {
  std::vector<std::string> words{program};
  if (isBatchFile(program)) words = {"/bin/sh", "-c", batchRunner, program, program, "\r"};
  for (std::string& word : wordsOf(arguments)) words.push_back(std::move(word));
  return words;
}

/// What a child begins with: a session of its own, all signals as usual, no descriptor of ours.
class ChildSetup {
 public:
  ChildSetup() {
    ::posix_spawn_file_actions_init(&actions_);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      ::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", stream == STDIN_FILENO ? O_RDONLY : O_WRONLY,
                                         0);
    ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    ::posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigemptyset(&signals);
    ::posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    ::posix_spawnattr_setsigdefault(&attributes_, &signals);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~ChildSetup() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions_);
  }
  ChildSetup(const ChildSetup&) = delete;
  ChildSetup& operator=(const ChildSetup&) = delete;

  /// 0, or the number of the error.
  int spawn(pid_t& process, std::vector<std::string> words) const {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return ::posix_spawn(&process, pointers.front(), &actions_, &attributes_, pointers.data(), environ);
  }

 private:
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

}  // namespace

ProcessId LinuxProcesses::start(std::string_view commandLine, WindowStyle) {
  const auto command = findCommand(commandLine, [this](std::string_view name) { return programFile(name, paths_); });
  if (!command) {
    failed("start", commandLine, readingsOf(commandLine).empty() ? "non c'\xE8 un programma" : reasonOf(ENOENT));
    return 0;
  }
  const std::vector<std::string> words = wordsFor(command->program, command->arguments);
  pid_t process = 0;
  if (const int error = ChildSetup().spawn(process, words); error != 0) {
    failed("start", commandLine, reasonOf(error));
    return 0;
  }
  reaper_.add(process);
  return static_cast<ProcessId>(process);
}

ProcessHandle LinuxProcesses::open(ProcessId process) {
  Descriptor watch = reaper_.watch(static_cast<pid_t>(process));
  if (!watch) {
    failed("open", std::to_string(process), "il programma non \xE8 in esecuzione");
    return 0;
  }
  lastHandle_ += handleStep;
  handles_.emplace(lastHandle_, std::move(watch));
  return lastHandle_;
}

bool LinuxProcesses::wait(ProcessHandle handle) {
  const auto found = handles_.find(handle);
  if (found == handles_.end()) return failed("wait", std::to_string(handle), "non \xE8 un programma aperto");
  pollfd waiting{.fd = found->second.number(), .events = POLLIN, .revents = 0};
  int ready = 0;
  do ready = ::poll(&waiting, 1, -1);
  while (ready < 0 && errno == EINTR);
  return ready == 1 || failed("wait", std::to_string(handle), reasonOf(errno));
}

bool LinuxProcesses::close(ProcessHandle handle) {
  return handles_.erase(handle) == 1 || failed("close", std::to_string(handle), "non \xE8 un programma aperto");
}

bool LinuxProcesses::failed(std::string_view operation, std::string_view subject, std::string_view reason) {
  trace_.failed(operation, subject, reason);
  return false;
}

}  // namespace tellaxis::platform
