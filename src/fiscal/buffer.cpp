// Buffer: feeding buffered receipts to the driver.
#include "fiscal/buffer.h"

#include <string>

#include "core/attesa.h"
#include "platform/files.h"

namespace tellaxis {

namespace {

constexpr int slots = 20;
constexpr std::int16_t pauseAfterMove = 50;

std::string fourDigits(int number) { return std::to_string(10'000 + number).substr(1); }

}  // namespace

bool MF_SvuotaBuffer(Bridge& bridge, std::string_view targetFolder, std::string_view targetName) {
  platform::Files& files = bridge.host.files;
  const std::string target = std::string(targetFolder) + "\\" + std::string(targetName);
  bool moved = false;
  for (int slot = 1; slot <= slots; ++slot) {
    const std::string slotFile = bridge.settings.pointOfSaleFolder + "\\_Buffer\\#" + fourDigits(slot);
    if (files.exists(slotFile) && !files.exists(target)) {
      if (files.move(slotFile, target)) moved = true;
      PausaCicli(pauseAfterMove);
    }
  }
  return moved;
}

}  // namespace tellaxis
