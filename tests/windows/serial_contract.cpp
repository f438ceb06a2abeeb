// Serial contract: the contract of serial ports on a line whose far end another program holds, which it asks over its
// own standard output: "@pull-out", "@put-back", "@received SIZE", each answered by a line.
#include "platform/contracts/serial_port_contract.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

#include "platform/contracts/real_computer.h"

namespace tellaxis::test {
namespace {

std::string ask(const std::string& question) {
  std::printf("@%s\n", question.c_str());
  std::fflush(stdout);
  std::array<char, 256> answer{};
  if (std::fgets(answer.data(), static_cast<int>(answer.size()), stdin) == nullptr) return {};
  std::string text = answer.data();
  text.erase(text.find_last_not_of("\r\n") + 1);
  return text;
}

struct LineDesk : RealComputer {
  LineDesk() { putBack(); }
  platform::SerialPorts& serialPorts() const { return host().serialPorts; }
  static std::string received(std::size_t size) { return ask("received " + std::to_string(size)); }
  static void pullOut() { ask("pull-out"); }
  static void putBack() { ask("put-back"); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Line, MissingSerialPortContract, LineDesk);
INSTANTIATE_TYPED_TEST_SUITE_P(Line, SerialPortContract, LineDesk);

}  // namespace
}  // namespace tellaxis::test
