// Ini: what keys read as, and what is written.
#include "core/ini/ini.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view file = "C:\\cassa\\_Tellaxis.ini";

class Ini : public testing::Test {
 protected:
  void store(std::string_view text) { computer.profiles.put(file, "Varie", "Chiave", text); }
  Value read() { return LeggiValore(computer.host, "Chiave", file); }
  std::string stored() { return computer.profiles.value(file, "Varie", "Chiave").value_or("(absent)"); }

  fake::Computer computer;
};

TEST_F(Ini, AMissingKeyReadsAsItsDefault) {
  EXPECT_EQ(LeggiImpostazione(computer.host, "Manca", yes, file), Value(yes));
  EXPECT_EQ(LeggiImpostazione(computer.host, "Manca", std::string("x"), file), Value(std::string("x")));
}

TEST_F(Ini, AnAbsentKeyReadsAsEmptyText) { EXPECT_EQ(read(), Value(std::string())); }

TEST_F(Ini, ABlankValueGivesTheDefault) {
  store("   ");
  EXPECT_EQ(LeggiImpostazione(computer.host, "Chiave", std::int16_t{50}, file), Value(std::int16_t{50}));
}

TEST_F(Ini, AReadReturnsTheFirst254Characters) {
  std::string text;
  for (int i = 0; i < 300; ++i) text += static_cast<char>('a' + i % 26);
  store(text);
  EXPECT_EQ(read(), Value(text.substr(0, 254)));
}

TEST_F(Ini, WordsOfTruthReadAsMinusOneAndZero) {
  for (const char* word : {"Vero", "True", "-1"}) {
    store(word);
    EXPECT_EQ(read(), Value(yes)) << word;
  }
  for (const char* word : {"Falso", "False", "0"}) {
    store(word);
    EXPECT_EQ(read(), Value(no)) << word;
  }
}

TEST_F(Ini, WordsOfTruthAreComparedWithTheirCase) {
  store("vero");
  EXPECT_EQ(read(), Value(std::string("vero")));
}

TEST_F(Ini, TextThatBeginsWithZeroStaysText) {
  for (const char* text : {"00", "0,5", "0123"}) {
    store(text);
    EXPECT_EQ(read(), Value(std::string(text)));
  }
}

TEST_F(Ini, DigitsReadAsANumberByTheRegionsRules) {
  store("12,5");
  EXPECT_EQ(read(), Value(Currency{125'000}));
  store("9600");
  EXPECT_EQ(read(), Value(Currency{96'000'000}));
  store("1.234,5");
  EXPECT_EQ(read(), Value(Currency{12'345'000}));
  computer.locale.settings.decimalSeparator = '.';
  computer.locale.settings.groupSeparator = ',';
  store("12.5");
  EXPECT_EQ(read(), Value(Currency{125'000}));
}

TEST_F(Ini, DigitsThatAreNoNumberStayText) {
  for (const char* text : {"1,2,3", ",", "99999999999999999999"}) {
    store(text);
    EXPECT_EQ(read(), Value(std::string(text)));
  }
}

TEST_F(Ini, PortsAndLineSettingsStayText) {
  for (const char* text : {"9600,N,8,1", "COM1", "-5"}) {
    store(text);
    EXPECT_EQ(read(), Value(std::string(text)));
  }
  store("\" 5\"");
  EXPECT_EQ(read(), Value(std::string(" 5")));
}

TEST_F(Ini, TextIsCutAtItsFirstNul) {
  EXPECT_EQ(TagliaNul(std::string_view("abc\0def", 7)), "abc");
  EXPECT_EQ(TagliaNul("abc"), "abc");
  store(std::string_view("COM1\0COM2", 9));
  EXPECT_EQ(read(), Value(std::string("COM1")));
}

TEST_F(Ini, ARawReadTurnsItsDefaultToText) {
  EXPECT_EQ(LeggiIni(computer.host, "Varie", "Manca", yes, file), "-1");
  EXPECT_EQ(LeggiIni(computer.host, "Varie", "Manca", Null{}, file), "");
}

TEST_F(Ini, ATypedWriteSkipsBlankValues) {
  store("prima");
  computer.journal.clear();
  ScriviImpostazione(computer.host, "Chiave", std::string(), file);
  ScriviImpostazione(computer.host, "Chiave", std::string("  "), file);
  ScriviImpostazione(computer.host, "Chiave", Null{}, file);
  EXPECT_THAT(computer.journal.calls(), IsEmpty());
  EXPECT_EQ(stored(), "prima");
}

TEST_F(Ini, ATypedWriteStoresTheTextFormOfItsValue) {
  ScriviImpostazione(computer.host, "Chiave", yes, file);
  EXPECT_EQ(stored(), "-1");
  ScriviImpostazione(computer.host, "Chiave", no, file);
  EXPECT_EQ(stored(), "0");
  ScriviImpostazione(computer.host, "Chiave", Currency{125'000}, file);
  EXPECT_EQ(stored(), "12,5");
  ScriviImpostazione(computer.host, "Chiave", true, file);
  EXPECT_EQ(stored(), "Vero");
  EXPECT_THAT(computer.journal.callsThatBegin("write [VARIE] "), testing::SizeIs(4));
}

TEST_F(Ini, ARawWriteStoresEmptyText) {
  store("prima");
  EXPECT_TRUE(ScriviIni(computer.host, "Varie", "Chiave", "", file));
  EXPECT_EQ(stored(), "");
}

TEST_F(Ini, ARawWriteWithoutAKeyDeletesTheSection) {
  store("prima");
  EXPECT_TRUE(ScriviIni(computer.host, "Varie", "", "x", file));
  EXPECT_EQ(stored(), "(absent)");
}

TEST_F(Ini, AFailedWriteSaysSo) {
  computer.journal.failCall(1);
  EXPECT_FALSE(ScriviIni(computer.host, "Varie", "Chiave", "x", file));
}

TEST_F(Ini, SectionsAreFoundWithoutRegardToCase) {
  computer.profiles.put(file, "Varie", "Chiave", "COM1");
  EXPECT_EQ(LeggiValore(computer.host, "CHIAVE", file), Value(std::string("COM1")));
  EXPECT_THAT(computer.journal.calls(), ElementsAre("read [VARIE] CHIAVE of C:\\cassa\\_Tellaxis.ini"));
}

TEST(IsNumero, TakesDigitsAndSeparatorsOnly) {
  EXPECT_TRUE(IsNumero("9600"));
  EXPECT_TRUE(IsNumero("1.234,5"));
  EXPECT_TRUE(IsNumero(""));
  EXPECT_FALSE(IsNumero("-1"));
  EXPECT_FALSE(IsNumero("1 2"));
  EXPECT_FALSE(IsNumero("1e3"));
  EXPECT_FALSE(IsNumero("0"));
  EXPECT_FALSE(IsNumero(std::nullopt));
}

TEST(IsVuoto, IsTrueForNothingAndForBlanks) {
  EXPECT_TRUE(IsVuoto(Null{}));
  EXPECT_TRUE(IsVuoto(std::string()));
  EXPECT_TRUE(IsVuoto(std::string("   ")));
  EXPECT_FALSE(IsVuoto(std::string(" x ")));
  EXPECT_FALSE(IsVuoto(no));
}

}  // namespace
}  // namespace tellaxis
