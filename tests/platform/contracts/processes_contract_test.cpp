// Processes contract, held by the fake and by the system that the tests run on.
#include "platform/contracts/processes_contract.h"

#include <map>

#include "fake/computer.h"
#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

namespace fs = std::filesystem;

struct RealDesk : RealComputer {
  platform::Processes& processes() const { return host().processes; }

  std::string program(const std::string& name) const {
    const fs::path path = folder.path(name).make_preferred();
    fs::create_directories(path.parent_path());
    fs::copy_file(NOTE_ARGUMENTS, path);
    return path.string();
  }

  std::string notes(const std::string& name) const { return folder.read(name + ".note"); }
};

struct FakeDesk {
  fake::Computer computer;
  std::map<std::string, std::string> notesOf;

  FakeDesk() {
    computer.processes.installed.emplace();
    computer.processes.onRun = [this](const std::string& program, const std::string& arguments) {
      std::string& notes = notesOf[program];
      bool quoted = false;
      for (const char c : arguments.substr(std::min<std::size_t>(1, arguments.size())))
        if (c == '"')
          quoted = !quoted;
        else
          notes += c == ' ' && !quoted ? '|' : c;
      notes += '\n';
    };
  }

  platform::Processes& processes() { return computer.processes; }
  std::string program(const std::string& name) {
    computer.processes.installed->insert("C:/" + name);
    return "C:/" + name;
  }
  std::string notes(const std::string& name) { return notesOf["C:/" + name]; }
  int failures() const { return static_cast<int>(computer.trace.failures.size()); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ProcessesContract, FakeDesk);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, ProcessesContract, RealDesk);

}  // namespace
}  // namespace tellaxis::test
