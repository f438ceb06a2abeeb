// Entry: lines of the diary.
#include "diary/entry.h"

#include <gtest/gtest.h>

namespace tellaxis {
namespace {

DiaryEntry sample() {
  return {.id = "261121-17",
          .time = "2026-11-21T10:05:42.123",
          .device = Device::courtesyPrinter,
          .job = "perch\xE9.txt",
          .bytes = 2048,
          .outcome = Outcome::failed,
          .ms = 12,
          .reason = "EndDoc \"LPT1:\": carta finita",
          .copy = "2026-11-21\\100542-123-perch\xE9.txt"};
}

TEST(Entry, IsOneLineOfJsonInUtf8) {
  EXPECT_EQ(
      lineOf(sample()),
      "{\"id\":\"261121-17\",\"time\":\"2026-11-21T10:05:42.123\",\"device\":\"courtesy\","
      "\"job\":\"perch\xC3\xA9.txt\",\"bytes\":2048,\"outcome\":\"failed\",\"ms\":12,"
      "\"reason\":\"EndDoc \\\"LPT1:\\\": carta finita\",\"copy\":\"2026-11-21\\\\100542-123-perch\xC3\xA9.txt\"}");
}

TEST(Entry, ComesBackFromItsLine) {
  for (const Outcome outcome : {Outcome::delivered, Outcome::confirmed, Outcome::unanswered, Outcome::givenUp,
                                Outcome::done, Outcome::failed, Outcome::discarded, Outcome::unconfirmed}) {
    for (const Device device : {Device::display, Device::fiscalPrinter, Device::slipPrinter, Device::courtesyPrinter}) {
      DiaryEntry entry = sample();
      entry.outcome = outcome;
      entry.device = device;
      entry.count = 1 + static_cast<int>(outcome);
      EXPECT_EQ(entryFrom(lineOf(entry)), entry);
    }
  }
}

TEST(Entry, OfATornOrUnknownLineIsNone) {
  const std::string line = lineOf(sample());
  for (std::size_t length = 0; length < line.size(); ++length) EXPECT_FALSE(entryFrom(line.substr(0, length)));
  EXPECT_FALSE(entryFrom("{}"));
  EXPECT_FALSE(entryFrom(R"({"id":"1","time":"t","outcome":"eaten"})"));
  EXPECT_FALSE(entryFrom(R"({"id":"1","time":"t","device":"kettle"})"));
  EXPECT_FALSE(entryFrom(R"({"id":"1","time":"t","bytes":"many"})"));
}

TEST(Entry, AMemberThatIsNotKnownYetIsPassedOver) {
  EXPECT_TRUE(entryFrom(R"({"id":"261121-1","time":"t","colour":"red"})"));
}

TEST(DeviceNamed, KnowsBothLanguages) {
  EXPECT_EQ(deviceNamed("slip"), Device::slipPrinter);
  EXPECT_EQ(deviceNamed("ricevuta"), Device::slipPrinter);
  EXPECT_EQ(deviceNamed("fiscale"), Device::fiscalPrinter);
  EXPECT_FALSE(deviceNamed("forno"));
}

}  // namespace
}  // namespace tellaxis
