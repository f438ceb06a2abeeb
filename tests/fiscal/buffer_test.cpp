// Buffer: which slots are fed to the driver, and when.
#include "fiscal/buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fake/computer.h"

namespace tellaxis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Buffer : public testing::Test {
 protected:
  Buffer() { setPointOfSaleFolder(bridge.settings, "C:\\MERIDIA"); }

  void slot(const char* number) { computer.files.put(std::string("C:\\MERIDIA\\_Buffer\\#") + number, number); }
  std::vector<std::string> feed() {
    computer.journal.clear();
    MF_SvuotaBuffer(bridge, "C:\\MERIDIA\\Epson", "Scontr.xml");
    return computer.journal.callsThatBegin("move");
  }

  fake::Computer computer;
  Bridge bridge{computer.host};
};

TEST_F(Buffer, FeedsOneReceiptACall) {
  slot("0003");
  slot("0007");
  EXPECT_THAT(feed(), ElementsAre("move C:\\MERIDIA\\_Buffer\\#0003 -> C:\\MERIDIA\\Epson\\Scontr.xml"));
  EXPECT_THAT(feed(), IsEmpty());
  computer.files.erase("C:\\MERIDIA\\Epson\\Scontr.xml");
  EXPECT_THAT(feed(), ElementsAre("move C:\\MERIDIA\\_Buffer\\#0007 -> C:\\MERIDIA\\Epson\\Scontr.xml"));
}

TEST_F(Buffer, LooksAtSlots1To20) {
  slot("0000");
  slot("0021");
  EXPECT_THAT(feed(), IsEmpty());
  EXPECT_THAT(computer.journal.callsThatBegin("exists C:\\MERIDIA\\_Buffer\\#"), SizeIs(20));
  EXPECT_EQ(computer.journal.calls().front(), "exists C:\\MERIDIA\\_Buffer\\#0001");
  EXPECT_EQ(computer.journal.calls().back(), "exists C:\\MERIDIA\\_Buffer\\#0020");
}

TEST_F(Buffer, WaitsWhileTheDriverHasNotTakenTheReceiptBefore) {
  slot("0001");
  computer.files.put("C:\\MERIDIA\\Epson\\Scontr.xml", "before");
  EXPECT_THAT(feed(), IsEmpty());
  EXPECT_EQ(computer.files.text("C:\\MERIDIA\\Epson\\Scontr.xml"), "before");
}

}  // namespace
}  // namespace tellaxis
