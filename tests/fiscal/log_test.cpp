// Log: the form of its lines.
#include "fiscal/log.h"

#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

TEST(ScriviLog, AppendsOneDatedLineACall) {
  fake::Computer computer;
  computer.clock.seconds = 9 * 3600 + 5 * 60 + 59;
  ScriviLog(computer.host, "C:\\log.txt", "uno");
  ScriviLog(computer.host, "C:\\log.txt", "due");
  EXPECT_EQ(computer.files.text("C:\\log.txt"), "07/03/2003 09:05 - uno\r\n07/03/2003 09:05 - due\r\n");
}

TEST(ScriviLog, ALineThatCannotBeWrittenIsLost) {
  fake::Computer computer;
  computer.journal.failCall(1);
  ScriviLog(computer.host, "C:\\log.txt", "uno");
  ScriviLog(computer.host, "C:\\log.txt", "due");
  EXPECT_EQ(computer.files.text("C:\\log.txt"), "07/03/2003 09:30 - due\r\n");
}

}  // namespace
}  // namespace tellaxis
