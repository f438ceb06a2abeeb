// Profiles contract: what every implementation of profiles.h owes its callers.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/host.h"
#include "platform/profiles.h"

namespace tellaxis::test {

/// A Computer has host(), path(name) for a file of a folder that exists, and pathInMissingFolder().
template <class Computer>
struct ProfilesContract : testing::Test {
  static constexpr std::size_t size = 255;

  Computer computer;
  platform::Profiles& profiles = computer.host().profiles;
  const std::string file = computer.path("_Prova.ini");

  std::string read(const char* section, const char* key) { return profiles.read(section, key, "(none)", size, file); }
};

TYPED_TEST_SUITE_P(ProfilesContract);

TYPED_TEST_P(ProfilesContract, WhatWasWrittenIsReadWithoutRegardToCase) {
  EXPECT_TRUE(this->profiles.write("Varie", "MF_File", "C:\\MF\\in.txt", this->file));
  EXPECT_EQ(this->read("VARIE", "mf_FILE"), "C:\\MF\\in.txt");
  EXPECT_TRUE(this->profiles.write("varie", "mf_file", "perch\xE9 \x80", this->file));
  EXPECT_EQ(this->read("Varie", "MF_File"), "perch\xE9 \x80");
}

TYPED_TEST_P(ProfilesContract, WhatIsNotThereIsTheFallback) {
  EXPECT_EQ(this->read("Varie", "MF_File"), "(none)");
  EXPECT_TRUE(this->profiles.write("Varie", "Altro", "x", this->file));
  EXPECT_EQ(this->read("Varie", "MF_File"), "(none)");
  EXPECT_EQ(this->read("Altra", "Altro"), "(none)");
}

TYPED_TEST_P(ProfilesContract, AnEmptyValueIsAValue) {
  EXPECT_TRUE(this->profiles.write("Varie", "FTP_Azione", "", this->file));
  EXPECT_EQ(this->read("Varie", "FTP_Azione"), "");
}

TYPED_TEST_P(ProfilesContract, BlanksAndOnePairOfQuotesAroundAValueAreNotRead) {
  for (const auto& [stored, expected] : {std::pair{"  due parole\t", "due parole"},
                                         {"\"  a  \"", "  a  "},
                                         {"'a'", "a"},
                                         {"\"\"a\"\"", "\"a\""},
                                         {"\"a", "\"a"},
                                         {"\"a'", "\"a'"}}) {
    EXPECT_TRUE(this->profiles.write("Varie", "Chiave", stored, this->file));
    EXPECT_EQ(this->read("Varie", "Chiave"), expected) << stored;
  }
}

TYPED_TEST_P(ProfilesContract, NoMoreIsReadThanIsAskedFor) {
  EXPECT_TRUE(this->profiles.write("Varie", "Chiave", "123456", this->file));
  EXPECT_EQ(this->profiles.read("Varie", "Chiave", "", 4, this->file), "123");
  EXPECT_EQ(this->profiles.read("Varie", "Manca", "123456", 4, this->file), "123");
}

TYPED_TEST_P(ProfilesContract, AKeyAndASectionCanBeDeleted) {
  EXPECT_TRUE(this->profiles.write("Varie", "Uno", "1", this->file));
  EXPECT_TRUE(this->profiles.write("Varie", "Due", "2", this->file));
  EXPECT_TRUE(this->profiles.write("Varie", "UNO", std::nullopt, this->file));
  EXPECT_EQ(this->read("Varie", "Uno"), "(none)");
  EXPECT_EQ(this->read("Varie", "Due"), "2");
  EXPECT_TRUE(this->profiles.write("VARIE", std::nullopt, std::nullopt, this->file));
  EXPECT_EQ(this->read("Varie", "Due"), "(none)");
}

TYPED_TEST_P(ProfilesContract, SectionsAndKeysAreListedAsTheyWereWritten) {
  EXPECT_TRUE(this->profiles.write("Varie", "Uno", "1", this->file));
  EXPECT_TRUE(this->profiles.write("Altra", "Due", "2", this->file));
  EXPECT_TRUE(this->profiles.write("VARIE", "Tre", "3", this->file));
  using std::string_literals::operator""s;
  EXPECT_EQ(this->profiles.read(std::nullopt, std::nullopt, "", this->size, this->file), "Varie\0Altra\0"s);
  EXPECT_EQ(this->profiles.read("varie", std::nullopt, "", this->size, this->file), "Uno\0Tre\0"s);
}

TYPED_TEST_P(ProfilesContract, NothingIsStoredWithoutASectionOrAFolder) {
  EXPECT_FALSE(this->profiles.write(std::nullopt, "Uno", "1", this->file));
  EXPECT_FALSE(this->profiles.write("Varie", "Uno", "1", this->computer.pathInMissingFolder()));
  EXPECT_EQ(this->profiles.read("Varie", "Uno", "(none)", this->size, this->computer.pathInMissingFolder()), "(none)");
}

REGISTER_TYPED_TEST_SUITE_P(ProfilesContract, WhatWasWrittenIsReadWithoutRegardToCase, WhatIsNotThereIsTheFallback,
                            AnEmptyValueIsAValue, BlanksAndOnePairOfQuotesAroundAValueAreNotRead,
                            NoMoreIsReadThanIsAskedFor, AKeyAndASectionCanBeDeleted,
                            SectionsAndKeysAreListedAsTheyWereWritten, NothingIsStoredWithoutASectionOrAFolder);

}  // namespace tellaxis::test
