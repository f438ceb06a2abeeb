// Inspection contract, held by the fake and by the system that the tests run on.
#include "platform/inspection.h"

#include <gtest/gtest.h>

#include "fake/computer.h"
#include "fake/inspection.h"
#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

struct RealDesk : RealComputer {
  std::unique_ptr<platform::Inspection> owned = system->openInspection();
  platform::Inspection& inspection() const { return *owned; }

  std::string path(const std::string& name) const { return folder / name; }
  void put(const std::string& name) const { folder.write(name, "testo"); }
  void addFolder(const std::string& name) const { std::filesystem::create_directory(folder.path(name)); }
  std::string program(const std::string& name) const {
    const std::filesystem::path file = folder.path(name).make_preferred();
    std::filesystem::copy_file(NOTE_ARGUMENTS, file);
    return file.string();
  }
  static void age(const std::string& file) {
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  }
};

struct FakeDesk {
  fake::Computer computer;
  fake::Inspection fake{computer.files, computer.processes};
  platform::Inspection& inspection() { return fake; }

  static std::string path(const std::string& name) { return "C:\\desk\\" + name; }
  void put(const std::string& name) { computer.files.put(path(name), "testo"); }
  void addFolder(const std::string& name) { computer.files.addFolder(path(name)); }
  std::string program(const std::string& name) {
    computer.processes.installed = {path(name)};
    return path(name);
  }
  void age(const std::string& file) { fake.ages[fake::lower(file)] = std::chrono::hours(1); }
};

template <class Desk>
struct InspectionContract : testing::Test {
  Desk desk;
};

using Desks = testing::Types<FakeDesk, RealDesk>;
TYPED_TEST_SUITE(InspectionContract, Desks);

TYPED_TEST(InspectionContract, AFileAndAFolderAreToldApart) {
  this->desk.put("a.txt");
  this->desk.addFolder("cartella");
  const auto file = this->desk.inspection().look(this->desk.path("A.TXT"));
  EXPECT_TRUE(file.isFile && !file.isFolder && file.mayRead && file.mayWrite);
  EXPECT_LT(file.age, std::chrono::seconds(60));
  const auto folder = this->desk.inspection().look(this->desk.path("cartella"));
  EXPECT_TRUE(!folder.isFile && folder.isFolder && folder.mayRead && folder.mayWrite);
}

TYPED_TEST(InspectionContract, WhatIsMissingIsNeitherAndMayNothing) {
  for (const std::string& path : {this->desk.path("nessuno"), this->desk.path("nessuna\\x.txt"), std::string()}) {
    const auto look = this->desk.inspection().look(path);
    EXPECT_FALSE(look.isFile || look.isFolder || look.mayRead || look.mayWrite) << path;
    EXPECT_FALSE(this->desk.inspection().freeBytes(path)) << path;
  }
}

TYPED_TEST(InspectionContract, AFilesAgeIsSinceItsLastChange) {
  this->desk.put("a.txt");
  this->desk.age(this->desk.path("a.txt"));
  const auto age = this->desk.inspection().look(this->desk.path("a.txt")).age;
  EXPECT_GE(age, std::chrono::minutes(59));
  EXPECT_LE(age, std::chrono::minutes(61));
}

TYPED_TEST(InspectionContract, ADiskHasRoom) {
  this->desk.addFolder("cartella");
  EXPECT_GT(this->desk.inspection().freeBytes(this->desk.path("cartella")).value_or(0), 0U);
}

TYPED_TEST(InspectionContract, AProgramIsFoundAsItWouldBeStarted) {
  const std::string program = this->desk.program("driver fiscale.exe");
  for (const std::string& line : {program + " /x", "\"" + program + "\" /x"}) {
    const auto look = this->desk.inspection().program(line);
    EXPECT_NE(look.file.find("driver fiscale.exe"), std::string::npos) << line;
    EXPECT_TRUE(look.executable) << line;
  }
  for (const std::string& line : {this->desk.path("nessuno.exe"), std::string()}) {
    EXPECT_EQ(this->desk.inspection().program(line).file, "") << line;
    EXPECT_FALSE(this->desk.inspection().program(line).executable) << line;
  }
}

TYPED_TEST(InspectionContract, ALineThatTheComputerLacksIsMissing) {
  for (const bool mayOpen : {false, true}) {
    const auto look = this->desk.inspection().port(231, mayOpen);
    EXPECT_EQ(look.access, platform::PortAccess::missing);
    EXPECT_NE(look.device, "");
    EXPECT_EQ(look.heldBy, "");
  }
}

TEST(RealInspection, AFileThatIsNoProgramIsFoundAndNotExecutable) {
  const RealDesk desk;
  desk.put("driver.exe");
  const auto look = desk.inspection().program(desk.path("driver.exe"));
  EXPECT_NE(look.file, "");
  EXPECT_FALSE(look.executable);
}

}  // namespace
}  // namespace tellaxis::test
