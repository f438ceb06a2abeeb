// Files contract, held by the fake and by the system that the tests run on.
#include "platform/contracts/files_contract.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>

#include "platform/contracts/fake_computer.h"
#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

struct RealDesk : RealComputer {
  std::string path(const std::string& name) const { return folder.path(name).make_preferred().string(); }
  std::string pathInMissingFolder(const std::string& name) const { return path("manca") + "\\" + name; }

  void hold(const std::string& path) { writers_[path].open(native(path), std::ios::binary | std::ios::app); }
  void release(const std::string& path) { writers_.erase(path); }

  /// Only root may mount a small disk, on Linux.
  std::string fullDisk() {
    const std::string disk = folder.path("disco").string();
    std::filesystem::create_directory(disk);
    if (std::system(("mount -t tmpfs -o size=64k tmpfs " + disk + " 2>/dev/null").c_str()) != 0) return {};
    mounted_ = disk;
    std::ofstream(disk + "/tenuto.txt") << "prima";
    std::ofstream filler(disk + "/riempie", std::ios::binary);
    const std::string block(4096, 'x');
    while (filler << block << std::flush) {
    }
    return disk;
  }

  RealDesk() = default;
  ~RealDesk() {
    if (mounted_.empty()) return;
    EXPECT_EQ(std::system(("umount " + mounted_).c_str()), 0);
  }
  RealDesk(const RealDesk&) = delete;
  RealDesk& operator=(const RealDesk&) = delete;

 private:
  static std::string native(std::string path) {
    std::ranges::replace(path, '\\', '/');
    return path;
  }

  std::map<std::string, std::ofstream> writers_;
  std::string mounted_;
};

struct FakeDesk : FakeComputer {
  FakeDesk() { computer.files.withoutFolder("C:\\desk\\manca"); }

  static std::string pathInMissingFolder(const std::string& name) { return "C:\\desk\\manca\\" + name; }
  void hold(const std::string& path) { computer.files.hold(path); }
  void release(const std::string& path) { computer.files.release(path); }
  std::string fullDisk() {
    computer.files.put("C:\\desk\\disco\\tenuto.txt", "prima");
    computer.files.fill("C:\\desk\\disco");
    return "C:\\desk\\disco";
  }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, FilesContract, FakeDesk);
INSTANTIATE_TYPED_TEST_SUITE_P(Real, FilesContract, RealDesk);

}  // namespace
}  // namespace tellaxis::test
