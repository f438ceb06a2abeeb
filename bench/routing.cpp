// Routing: an idle tick and passes of jobs, beside a bare program that makes only the unavoidable system calls.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "bench_desk.h"
#include "core/polling.h"
#include "receipts.h"

namespace {

namespace fs = std::filesystem;
using namespace tellaxis;
using namespace tellaxis::bench;

constexpr int idleTicks = 2000;
constexpr std::chrono::seconds rest{3};

void bareCopy(const std::string& from, const std::string& to) {
  std::array<char, 65'536> buffer;
  const int in = open(from.c_str(), O_RDONLY | O_CLOEXEC);
  const int out = open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  for (ssize_t size = 0; (size = read(in, buffer.data(), buffer.size())) > 0;)
    if (write(out, buffer.data(), static_cast<std::size_t>(size)) != size) std::perror("write");
  close(in);
  close(out);
}

std::vector<std::string> bareList(const std::string& path) {
  std::vector<std::string> names;
  DIR* folder = opendir(path.c_str());
  while (const dirent* entry = readdir(folder))
    if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
  closedir(folder);
  std::ranges::sort(names);
  return names;
}

/// Of more jobs than this a pass carries out as many; the others are moved all the same.
constexpr std::size_t carriedOut = 101;

std::span<const std::string> firstOf(const std::vector<std::string>& names) {
  return std::span(names).first(std::min(names.size(), carriedOut));
}

/// List, rename, copy, delete: what no program can do without.
void barePass(const std::string& drop, const std::string& work, const std::string& target) {
  const std::vector<std::string> names = bareList(drop);
  for (const std::string& name : names)
    if (rename((drop + "/" + name).c_str(), (work + "/" + name).c_str()) != 0) std::perror("rename");
  for (const std::string& name : firstOf(names)) {
    bareCopy(work + "/" + name, target);
    unlink((work + "/" + name).c_str());
  }
}

bool isHeldByWriter(const std::string& file) {
  const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  const bool held = fcntl(opened, F_SETLEASE, F_RDLCK) != 0;
  if (!held) fcntl(opened, F_SETLEASE, F_UNLCK);
  close(opened);
  return held;
}

/// The same for a program that may lose nothing: no job that is still being written is taken, none replaces another
/// unseen, and the driver never meets half a receipt.
void carefulPass(const std::string& drop, const std::string& work, const std::string& target) {
  const std::vector<std::string> names = bareList(drop);
  for (const std::string& name : names) {
    const std::string from = drop + "/" + name;
    const std::string to = work + "/" + name;
    if (isHeldByWriter(from) || renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0)
      std::perror(from.c_str());
  }
  const std::string unfinished = target + ".tmp";
  for (const std::string& name : firstOf(names)) {
    bareCopy(work + "/" + name, unfinished);
    if (rename(unfinished.c_str(), target.c_str()) != 0) std::perror("rename");
    unlink((work + "/" + name).c_str());
  }
}

/// What a tick with nothing to do has to look at: three settings reads (one by the gate, two by the unchanged gate
/// writes, for each routed device), two folders listed, three files that are not there.
void bareIdleTick(const std::string& folder) {
  struct stat status {};
  for (const char* name : {"/display.txt", "/out.txt", "/rf.txt"}) stat((folder + name).c_str(), &status);
  std::array<char, 4096> buffer{};
  for (int i = 0; i < 6; ++i) {
    const int file = open((folder + "/_Tellaxis.ini").c_str(), O_RDONLY | O_CLOEXEC);
    if (read(file, buffer.data(), buffer.size()) < 0) std::perror("read");
    close(file);
  }
  for (const char* name : {"/Orbis", "/CortOrbis"}) {
    DIR* listing = opendir((folder + name).c_str());
    while (readdir(listing) != nullptr) {
    }
    closedir(listing);
  }
}

void configure(Settings& settings, const std::string& folder) {
  setMainFolder(settings, folder);
  settings.Display_Active = settings.MF_Active = settings.RF_Active = settings.Cort_Active = true;
  settings.Display_File = folder + "\\display.txt";
  settings.MF_File = folder + "\\in.txt";
  settings.MF_File_Output = folder + "\\out.txt";
  settings.RF_File = folder + "\\rf.txt";
  settings.RF_Stampante = "EPSON TM-L90 Receipt";
  settings.RF_Seriale = std::string("LPT1:");
}

/// What the pass goes through: some jobs, and files that were left in the work folder before.
struct Load {
  int jobs;
  int left;
  int rounds;
};

constexpr Load loads[] = {{3, 0, 200}, {15, 0, 200}, {100, 0, 200}, {10'000, 0, 10}, {100, 10'000, 200}};

/// Takes the jobs that a pass moved without carrying them out, and makes sure that they are as many as they should be.
bool takeMovedJobs(const fs::path& drop, const fs::path& work, const Load& load) {
  const int moved = std::max(0, load.jobs - static_cast<int>(carriedOut));
  if (std::distance(fs::directory_iterator(work), {}) != load.left + moved || !fs::is_empty(drop)) return false;
  if (moved == 0) return true;
  fs::remove_all(work);
  return fs::create_directory(work);
}

bool measurePass(Bridge& bridge, Devices& devices, const std::string& folder, const Load& load) {
  std::vector<double> ours;
  std::vector<double> bare;
  std::vector<double> careful;
  const fs::path work = folder + "/IN";
  for (int i = 0; i < load.left; ++i) std::ofstream(work / ("left" + std::to_string(i))) << "";
  const fs::path drop = folder + "/Orbis";
  for (int round = 0; round < load.rounds; ++round) {
    dropJobs(drop, load.jobs);
    ours.push_back(microseconds([&] {
      std::string dropFolder = folder + "\\Orbis";
      std::string workFolder = folder + "\\IN";
      SmistaFile(bridge, devices, dropFolder, bridge.settings.settingsFile, workFolder, "MF");
    }));
    if (!takeMovedJobs(drop, work, load)) return false;
    dropJobs(drop, load.jobs);
    bare.push_back(microseconds([&] { barePass(drop, work, folder + "/in.txt"); }));
    if (!takeMovedJobs(drop, work, load)) return false;
    dropJobs(drop, load.jobs);
    careful.push_back(microseconds([&] { carefulPass(drop, work, folder + "/in.txt"); }));
    if (!takeMovedJobs(drop, work, load)) return false;
  }
  for (int i = 0; i < load.left; ++i) fs::remove(work / ("left" + std::to_string(i)));
  std::printf(
      "routing pass of %d jobs%s: %.0f us; bare %.0f us, ratio %.2f; with the same guarantees %.0f us, ratio %.2f\n",
      load.jobs, load.left == 0 ? "" : (" beside " + std::to_string(load.left) + " files").c_str(), median(ours),
      median(bare), median(ours) / median(bare), median(careful), median(ours) / median(careful));
  return true;
}

void measureIdleTicks(Bridge& bridge, Devices& devices, const std::string& folder) {
  Polling polling(bridge, devices);
  // A desk that waits for jobs has not touched its folders for a while.
  std::this_thread::sleep_for(rest);
  std::vector<double> idle;
  std::vector<double> bareIdle;
  for (int tick = 0; tick < idleTicks; ++tick) {
    idle.push_back(microseconds([&] { polling.Timer1_Timer(); }));
    bareIdle.push_back(microseconds([&] { bareIdleTick(folder); }));
  }
  std::printf("idle tick: %.1f us, bare %.1f us, ratio %.2f\n", median(idle), median(bareIdle),
              median(idle) / median(bareIdle));
}

int measure(platform::Host& host, const std::string& folder) {
  Bridge bridge(host);
  configure(bridge.settings, folder);
  CopyingDevices devices(bridge);
  for (const Load& load : loads)
    if (!measurePass(bridge, devices, folder, load)) return 1;
  measureIdleTicks(bridge, devices, folder);
  return 0;
}

}  // namespace

int main(int count, char** words) {
  return onDesk(
      count, words,
      "MF_Vuoto=-1\r\nCort_Vuoto=-1\r\nRF_Vuoto=-1\r\nOrbis_Directory=C:\\MERIDIA\r\nMF_File=C:\\MF\\in.txt\r\n",
      measure);
}
