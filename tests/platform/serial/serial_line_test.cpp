// Serial line: what it asks of a device that is slow, stuck or gone.
#include "platform/serial/serial_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/trace_log.h"

namespace tellaxis::platform {
namespace {

/// Notes what is asked of a device, and answers each write as told.
struct Adapter final : SerialDevices {
  class Device final : public SerialDevice {
   public:
    explicit Device(Adapter& adapter) : adapter_(adapter) {}
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() override { adapter_.asked.emplace_back("close"); }

    bool configure(const LineSettings&, std::string&) override { return true; }
    WriteResult write(std::string_view bytes, std::chrono::milliseconds limit) override {
      adapter_.asked.push_back("write " + std::string(bytes) + " within " + std::to_string(limit.count()));
      return adapter_.answer;
    }
    void drain(std::chrono::milliseconds limit) override {
      adapter_.asked.push_back("drain within " + std::to_string(limit.count()));
    }

   private:
    Adapter& adapter_;
  };

  std::string nameOf(int number) const override { return "COM" + std::to_string(number); }
  std::unique_ptr<SerialDevice> open(int, const LineSettings&, const LineBuffers&, std::string&) override {
    asked.emplace_back("open");
    return std::make_unique<Device>(*this);
  }

  WriteResult answer = WriteResult::done;
  std::vector<std::string> asked;
};

struct SerialLineTest : testing::Test {
  using Asked = std::vector<std::string>;

  Adapter adapter;
  test::TraceLog trace;
};

TEST_F(SerialLineTest, ClosingWaitsForWhatTheAdapterStillHolds) {
  SerialLine line(adapter, trace);
  ASSERT_TRUE(line.open(3, {}, {}));
  EXPECT_TRUE(line.write("a"));
  EXPECT_TRUE(line.close());
  EXPECT_EQ(adapter.asked, (Asked{"open", "write a within 2000", "drain within 2000", "close"}));
}

TEST_F(SerialLineTest, ALineThatIsGivenUpIsWaitedForToo) {
  {
    SerialLine line(adapter, trace);
    ASSERT_TRUE(line.open(3, {}, {}));
  }
  EXPECT_EQ(adapter.asked, (Asked{"open", "drain within 2000", "close"}));
}

TEST_F(SerialLineTest, AStuckAdapterIsOpenedAnewForTheNextWriteAndGivenLessTime) {
  SerialLine line(adapter, trace);
  ASSERT_TRUE(line.open(3, {}, {}));
  adapter.answer = WriteResult::stuck;
  EXPECT_FALSE(line.write("a"));
  adapter.answer = WriteResult::done;
  EXPECT_TRUE(line.write("b"));
  EXPECT_TRUE(line.write("c"));
  EXPECT_EQ(adapter.asked,
            (Asked{"open", "write a within 2000", "close", "open", "write b within 200", "write c within 2000"}));
}

TEST_F(SerialLineTest, AStuckAdapterIsNotWaitedForAtTheEnd) {
  SerialLine line(adapter, trace);
  ASSERT_TRUE(line.open(3, {}, {}));
  adapter.answer = WriteResult::stuck;
  EXPECT_FALSE(line.write("a"));
  EXPECT_TRUE(line.close());
  EXPECT_EQ(adapter.asked, (Asked{"open", "write a within 2000", "close"}));
}

}  // namespace
}  // namespace tellaxis::platform
