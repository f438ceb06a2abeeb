// Profiles shared: other programs that lock, write, replace, or die in the middle of it.
#include <sys/file.h>
#include <sys/wait.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include "platform/linux/profiles/ini_folder.h"

namespace tellaxis::platform {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Another process; ended and waited for when destroyed.
class Child {
 public:
  explicit Child(const std::function<void()>& work) : id_(fork()) {
    if (id_ != 0) return;
    work();
    _exit(0);
  }
  ~Child() { finish(SIGKILL); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// Sends `signal` (0: none) and waits; true when it ended by itself and in peace.
  bool finish(int signal = 0) {
    if (id_ <= 0) return false;
    if (signal != 0) kill(id_, signal);
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

 private:
  pid_t id_;
};

/// One byte from one process to another.
class Signal {
 public:
  Signal() { EXPECT_EQ(pipe(ends_), 0); }
  ~Signal() {
    close(ends_[0]);
    close(ends_[1]);
  }
  void give() const { EXPECT_EQ(::write(ends_[1], "x", 1), 1); }
  void await() const {
    char byte = 0;
    EXPECT_EQ(::read(ends_[0], &byte, 1), 1);
  }

 private:
  int ends_[2] = {-1, -1};
};

/// A folder in memory where there is one: these tests write often, and a busy disk would make them take minutes.
std::filesystem::path quickFolder() {
  const std::filesystem::path memory = "/dev/shm";
  return access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
}

class SharedProfile : public IniFolder {
 protected:
  SharedProfile() : IniFolder(quickFolder()) {}

  /// Runs `hold` on the file, open in another process, and `check` before that process closes it.
  void whileHeld(int flags, const std::function<void(int)>& hold, const std::function<void()>& check) {
    Signal held, over;
    Child other([&] {
      const int file = ::open(file_.c_str(), flags);
      hold(file);
      held.give();
      over.await();
    });
    held.await();
    check();
    over.give();
    EXPECT_TRUE(other.finish());
  }
  LinuxProfiles profiles_{asGiven, trace_};
};

TEST_F(SharedProfile, KeepsTheKeysThatAnotherOwnerIsStillWriting) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs a second user";
  std::string keys = "[A]\r\n";
  for (int i = 0; i < 32; ++i) keys += "k" + std::to_string(i) + "=v\r\n";
  put(keys);
  ASSERT_EQ(::chmod(file_.c_str(), 0666), 0);
  ASSERT_EQ(::chmod((folder_ / "").c_str(), 0777), 0);
  Signal truncated;
  Child pointOfSale([&] {
    const int file = ::open(file_.c_str(), O_WRONLY | O_TRUNC);
    truncated.give();
    ::usleep(400'000);
    EXPECT_EQ(::write(file, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    ::close(file);
  });
  truncated.await();
  ASSERT_EQ(::seteuid(65534), 0);
  const std::string read = profiles_.read("A", "k31", "DEF", 255, file_);
  const bool written = profiles_.write("A", "new", "w", file_);
  ASSERT_EQ(::seteuid(0), 0);
  EXPECT_TRUE(pointOfSale.finish());
  EXPECT_EQ(read, "v");
  EXPECT_TRUE(written);
  EXPECT_EQ(content(), keys + "new=w\r\n");
}

void lockByFcntl(int file) {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  EXPECT_EQ(fcntl(file, F_SETLK, &lock), 0);
}

TEST_F(SharedProfile, LeavesALockedFileAndReadsItAsTheDefault) {
  put("[A]\r\nk=v\r\n");
  const std::function<void(int)> locks[] = {[](int file) { flock(file, LOCK_EX); }, lockByFcntl};
  for (const auto& lock : locks) {
    whileHeld(O_RDWR, lock, [&] {
      const auto start = Clock::now();
      EXPECT_EQ(get("A", "k"), "DEF");
      EXPECT_FALSE(set("A", "k", "w"));
      EXPECT_LT(Clock::now() - start, 1s);
    });
  }
  EXPECT_EQ(content(), "[A]\r\nk=v\r\n");
  const std::string reason = "il file \xE8 bloccato da un altro programma";
  const std::vector<std::string> reports{report("lettura INI", reason), report("scrittura INI", reason)};
  EXPECT_EQ(trace_.lines, (std::vector<std::string>{reports[0], reports[1], reports[0], reports[1]}));
  EXPECT_EQ(get("A", "k"), "v");
  EXPECT_TRUE(set("A", "k", "w"));
}

TEST_F(SharedProfile, WaitsForALockThatIsGivenBackInTime) {
  put("[A]\r\nk=v\r\n");
  Signal held;
  Child other([&] {
    const int file = ::open(file_.c_str(), O_RDONLY);
    flock(file, LOCK_EX);
    held.give();
    std::this_thread::sleep_for(150ms);
  });
  held.await();
  EXPECT_TRUE(profiles_.write("A", "k", "w", file_));
  EXPECT_EQ(content(), "[A]\r\nk=w\r\n");
}

TEST_F(SharedProfile, NeverMergesAHalfWrittenFile) {
  put("[A]\r\nk=v\r\nz=1\r\n");
  whileHeld(
      O_WRONLY | O_TRUNC, [](int file) { EXPECT_EQ(::write(file, "[A]\r\nk=", 7), 7); },
      [&] {
        const struct stat before = facts();
        EXPECT_FALSE(set("A", "n", "w"));
        EXPECT_EQ(facts().st_ino, before.st_ino);
        EXPECT_EQ(content(), "[A]\r\nk=");
      });
  EXPECT_EQ(trace_.lines,
            std::vector<std::string>{report("scrittura INI", "un altro programma sta scrivendo il file")});
}

TEST_F(SharedProfile, AddsItsKeyOnceTheOtherWriterIsDone) {
  put("[A]\r\nk=v\r\nz=1\r\n");
  Signal half;
  Child other([&] {
    const int file = ::open(file_.c_str(), O_WRONLY | O_TRUNC);
    bool whole = ::write(file, "[A]\r\nk=", 7) == 7;
    half.give();
    std::this_thread::sleep_for(150ms);
    whole = whole && ::write(file, "2\r\nz=3\r\n", 8) == 8;
    if (!whole) _exit(1);
  });
  half.await();
  EXPECT_TRUE(profiles_.write("A", "n", "w", file_));
  EXPECT_EQ(content(), "[A]\r\nk=2\r\nz=3\r\nn=w\r\n");
  EXPECT_TRUE(other.finish());
}

TEST_F(SharedProfile, ReadsAFileThatIsOnlyKeptOpen) {
  put("[A]\r\nk=v\r\n");
  const timespec old[2] = {{1000000000, 0}, {1000000000, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, file_.c_str(), old, 0), 0);
  LinuxProfiles slow(asGiven, trace_, {.read = 5s, .write = 5s});
  whileHeld(
      O_RDWR, [](int) {},
      [&] {
        const auto start = Clock::now();
        EXPECT_EQ(slow.read("A", "k", "DEF", 255, file_), "v");
        EXPECT_LT(Clock::now() - start, 1s);
      });
}

TEST_F(SharedProfile, ReadsAWholeFileWhileAWriterKeepsReplacingIt) {
  put("[A]\r\nk=v\r\n");
  Child other([&] {
    for (;;) {
      const int file = ::open(file_.c_str(), O_WRONLY | O_TRUNC);
      bool whole = ::write(file, "[A]\r\n", 5) == 5;
      whole = whole && ::write(file, "k=v\r\n", 5) == 5;
      close(file);
      if (!whole) _exit(1);
      std::this_thread::sleep_for(1ms);
    }
  });
  const auto end = Clock::now() + 500ms;
  LinuxProfiles slow(asGiven, trace_, {.read = 1s, .write = 1s});
  while (Clock::now() < end) ASSERT_EQ(slow.read("A", "k", "DEF", 255, file_), "v");
}

TEST_F(SharedProfile, NeverBringsBackAFileThatAnotherReplaced) {
  put("[A]\r\nturn=0\r\n");
  std::atomic<int> turns = 0;
  int lostTurns = 0;
  std::thread outsider([&] {
    test::TraceLog trace;
    LinuxProfiles reader(asGiven, trace);
    const auto turn = [&] { return reader.read("A", "turn", "", 255, file_); };
    while (turns < 500) {
      const std::string number = std::to_string(++turns);
      const std::string fresh = folder_ / "fresh";
      std::ofstream(fresh, std::ios::binary) << "[A]\r\nturn=" << number << "\r\n";
      std::filesystem::rename(fresh, file_);
      std::this_thread::sleep_for(std::chrono::microseconds(turns % 7 * 100));
      int tries = 0;
      while (turn() != number && ++tries < 100) std::this_thread::sleep_for(1ms);
      if (tries == 100) ++lostTurns;
    }
  });
  int stored = 0;
  bool everyOne = true;
  for (; turns < 500; ++stored) everyOne = profiles_.write("A", "n", std::to_string(stored), file_) && everyOne;
  outsider.join();
  EXPECT_TRUE(everyOne);
  EXPECT_GT(stored, 10);
  EXPECT_EQ(lostTurns, 0);
}

/// Reads the file, puts another turn into it and writes it back, all on one descriptor. False when it saw no whole
/// file.
bool takeTurnInPlace(const std::string& path, int turn) {
  const int file = ::open(path.c_str(), O_RDWR);
  char bytes[4096];
  const ssize_t size = ::read(file, bytes, sizeof bytes);
  std::string text(bytes, size > 0 ? static_cast<std::size_t>(size) : 0);
  const std::size_t begin = text.find("turn=");
  const std::size_t end = text.find("\r\n", begin);
  bool whole = begin != std::string::npos && end != std::string::npos;
  if (whole) {
    text.replace(begin, end - begin, "turn=" + std::to_string(turn));
    whole = ftruncate(file, 0) == 0;
    std::this_thread::sleep_for(100us);
    whole = whole && pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
  }
  close(file);
  return whole;
}

TEST_F(SharedProfile, GivesWayToAWriterThatWorksInPlace) {
  put("[A]\r\nturn=0\r\n");
  std::atomic<bool> over = false;
  std::atomic<int> turns = 0;
  int lostTurns = 0;
  std::thread outsider([&] {
    test::TraceLog trace;
    LinuxProfiles reader(asGiven, trace);
    while (!over && takeTurnInPlace(file_, turns + 1)) {
      ++turns;
      if (reader.read("A", "turn", "", 255, file_) != std::to_string(turns)) ++lostTurns;
      std::this_thread::sleep_for(std::chrono::microseconds(turns % 7 * 100));
    }
    EXPECT_TRUE(over);
  });
  const auto end = Clock::now() + 30s;
  int last = 0;
  int unread = 0;
  while (turns < 300 && Clock::now() < end) {
    const std::string number = std::to_string(++last);
    EXPECT_TRUE(profiles_.write("A", "n", number, file_)) << number;
    if (profiles_.read("A", "n", "DEF", 255, file_) != number) ++unread;
  }
  over = true;
  outsider.join();
  EXPECT_GE(turns, 300);
  // A writer that has looked the name up but not yet opened the file is seen by nobody: once in many thousand turns it
  // opens the file that was just replaced.
  EXPECT_LE(lostTurns, 3);
  // On a busy computer a writer may be kept from going on, between emptying and writing, for longer than a reader
  // waits.
  EXPECT_LE(unread, 1);
  EXPECT_GT(last, 10);
  EXPECT_EQ(content(), "[A]\r\nturn=" + std::to_string(turns) + "\r\nn=" + std::to_string(last) + "\r\n");
}

TEST_F(SharedProfile, GivesWayToAnotherHolderOfTheFolder) {
  put("[A]\r\nk=v\r\n");
  const int folder = ::open(folder_.path("").c_str(), O_RDONLY | O_DIRECTORY);
  ASSERT_EQ(flock(folder, LOCK_EX), 0);
  EXPECT_FALSE(set("A", "k", "w"));
  EXPECT_TRUE(set("A", "k", "v"));
  close(folder);
  EXPECT_TRUE(set("A", "k", "w"));
}

constexpr int processes = 2;
constexpr int threads = 6;
constexpr int keys = 40;

std::string keyOf(int process, int thread, int key) {
  return "k" + std::to_string(process) + "_" + std::to_string(thread) + "_" + std::to_string(key);
}

TEST_F(SharedProfile, LosesNothingOfManyWriters) {
  const auto work = [this](int process) {
    std::atomic<bool> stored = true;
    std::vector<std::thread> workers;
    for (int thread = 0; thread < threads; ++thread)
      workers.emplace_back([&, thread] {
        test::TraceLog trace;
        LinuxProfiles profiles(asGiven, trace, {.write = 60s});
        for (int key = 0; key < keys; ++key) {
          const std::string name = keyOf(process, thread, key);
          if (!profiles.write("S" + std::to_string(thread), name, name, file_)) stored = false;
        }
      });
    for (std::thread& worker : workers) worker.join();
    if (!stored) _exit(1);
  };
  {
    Child first([&] { work(0); }), second([&] { work(1); });
    EXPECT_TRUE(first.finish());
    EXPECT_TRUE(second.finish());
  }
  for (int process = 0; process < processes; ++process)
    for (int thread = 0; thread < threads; ++thread)
      for (int key = 0; key < keys; ++key) {
        const std::string name = keyOf(process, thread, key);
        EXPECT_EQ(get("S" + std::to_string(thread), name), name);
      }
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

TEST_F(SharedProfile, IsWholeWheneverAWriterIsKilled) {
  std::string padding;
  for (int i = 0; i < 200; ++i) padding += "; " + std::string(100, 'c') + "\r\n";
  put("[A]\r\nn=0\r\n" + padding);
  long last = 0;
  for (int round = 0; round < 40; ++round) {
    int report[2];
    ASSERT_EQ(pipe(report), 0);
    {
      Child writer([&] {
        for (long n = last + 1;; ++n)
          if (profiles_.write("A", "n", std::to_string(n), file_) && ::write(report[1], &n, sizeof n) < 0) _exit(1);
      });
      std::this_thread::sleep_for(std::chrono::microseconds(500 + 731 * round));
      writer.finish(SIGKILL);
    }
    close(report[1]);
    long confirmed = last;
    while (::read(report[0], &confirmed, sizeof confirmed) == sizeof confirmed) {
    }
    close(report[0]);
    const long stored = std::stol(get("A", "n"));
    ASSERT_TRUE(stored == confirmed || stored == confirmed + 1) << stored << " after " << confirmed;
    ASSERT_EQ(content(), "[A]\r\nn=" + std::to_string(stored) + "\r\n" + padding);
    last = stored;
  }
  EXPECT_GT(last, 0);
  EXPECT_TRUE(set("A", "n", "end"));
  EXPECT_EQ(names(), std::vector<std::string>{"_Test.ini"});
}

}  // namespace
}  // namespace tellaxis::platform
