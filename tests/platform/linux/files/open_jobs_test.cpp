// Tests of the files of a Linux computer: jobs that stay open from their passage on until they are deleted.
#include <sys/resource.h>

#include <algorithm>

#include "files_folder.h"

namespace tellaxis::platform {
namespace {

struct OpenJob : LinuxFilesTest {
  OpenJob() {
    makeFolder("Orbis");
    makeFolder("IN");
    makeFolder("MF");
  }

  void pass() {
    const auto passage = files.openPassage("C:\\Orbis\\", "C:\\IN\\");
    ASSERT_NE(passage, nullptr);
    while (passage->next()) EXPECT_TRUE(passage->move());
  }

  void passOne(const std::string& text) {
    folder.write("Orbis/job", text);
    pass();
  }

  std::string handedOver() {
    return files.copy("C:\\IN\\job", "C:\\MF\\in.txt") ? folder.read("MF/in.txt") : "(not copied)";
  }

  Descriptor writer() { return Descriptor(::open((folder / "IN/job").c_str(), O_WRONLY | O_NONBLOCK)); }

  static auto openDescriptors() { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); }
};

TEST_F(OpenJob, IsOpenedOnceForItsPassageItsCopyAndItsEnd) {
  const auto before = openDescriptors();
  passOne("receipt");
  EXPECT_EQ(openDescriptors(), before + 1);
  EXPECT_EQ(handedOver(), "receipt");
  EXPECT_EQ(handedOver(), "receipt");
  EXPECT_EQ(openDescriptors(), before + 1);
  EXPECT_TRUE(files.remove("C:\\IN\\job"));
  EXPECT_FALSE(onDisk("IN/job"));
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(OpenJob, HoldsNobodyUpWhoWritesToIt) {
  passOne("receipt");
  EXPECT_TRUE(writer());
  EXPECT_EQ(handedOver(), "receipt");
  EXPECT_TRUE(writer());
}

TEST_F(OpenJob, IsNeitherCopiedNorDeletedWhileSomebodyWritesToItAgain) {
  passOne("receipt");
  {
    const Descriptor again = writer();
    EXPECT_EQ(handedOver(), "(not copied)");
    EXPECT_FALSE(files.remove("C:\\IN\\job"));
  }
  EXPECT_EQ(handedOver(), "receipt");
}

TEST_F(OpenJob, IsNotDeletedWhileSomebodyWritesToItAfterItsCopy) {
  passOne("receipt");
  EXPECT_EQ(handedOver(), "receipt");
  {
    const Descriptor again = writer();
    EXPECT_FALSE(files.remove("C:\\IN\\job"));
  }
  EXPECT_TRUE(onDisk("IN/job"));
}

TEST_F(OpenJob, IsReadAsItIsNowWhereSomebodyWroteToIt) {
  passOne("receipt");
  folder.write("IN/job", "another receipt");
  EXPECT_EQ(handedOver(), "another receipt");
}

TEST_F(OpenJob, IsNoLongerTheJobWhereAnotherFileTookItsPlace) {
  passOne("receipt");
  folder.write("IN/other", "another receipt");
  fs::rename(folder.path("IN/other"), folder.path("IN/job"));
  EXPECT_EQ(handedOver(), "another receipt");
  EXPECT_TRUE(files.remove("C:\\IN\\job"));
}

TEST_F(OpenJob, IsNoLongerThereWhereSomebodyDeletedIt) {
  passOne("receipt");
  fs::remove(folder.path("IN/job"));
  EXPECT_EQ(handedOver(), "(not copied)");
  EXPECT_FALSE(files.remove("C:\\IN\\job"));
}

TEST_F(OpenJob, IsClosedWhenTheNextPassageBegins) {
  const auto before = openDescriptors();
  passOne("receipt");
  pass();
  EXPECT_EQ(openDescriptors(), before);
  EXPECT_EQ(handedOver(), "receipt");
  EXPECT_TRUE(files.remove("C:\\IN\\job"));
}

TEST_F(OpenJob, IsClosedAtOnceWhereThereAreMoreThanAPassCarriesOut) {
  const auto before = openDescriptors();
  for (int number = 0; number < 150; ++number) folder.write("Orbis/job" + std::to_string(number), "");
  pass();
  EXPECT_EQ(openDescriptors(), before + 101);
}

TEST_F(OpenJob, IsClosedAtOnceWhereDescriptorsAreScarce) {
  struct rlimit usual {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
  struct rlimit scarce = usual;
  scarce.rlim_cur = 64;
  const auto before = openDescriptors();
  for (int number = 0; number < 40; ++number) folder.write("Orbis/job" + std::to_string(number), "");
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &scarce), 0);
  pass();
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
  EXPECT_LT(openDescriptors(), before + 16);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("IN")), {}), 40);
}

}  // namespace
}  // namespace tellaxis::platform
