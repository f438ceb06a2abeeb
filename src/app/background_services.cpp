// Background services: check, trial, diary and preview, each with services of its own.
#include "app/background_services.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <variant>

#include "app/commands/diary_command.h"
#include "app/commands/trial_command.h"
#include "app/scratch_folder.h"
#include "check/check.h"
#include "core/input/input_bytes.h"
#include "diary/diary.h"
#include "diary/reader.h"
#include "platform/files.h"
#include "platform/instance.h"
#include "platform/preview_pages.h"
#include "preview/preview.h"
#include "text/code_page.h"

namespace tellaxis {

namespace {

/// Nobody reads more of a job in a window.
constexpr std::size_t mostText = 64 * 1024;
/// The page of a longer job takes longer than somebody waits for it.
constexpr std::int64_t longestPreview = 256 * 1024;

std::string textOf(platform::Files& files, const std::string& file) {
  std::string text;
  InputBytes input(files.openInput(file));
  for (std::string_view bytes = input.rest(); !bytes.empty() && text.size() < mostText; bytes = input.rest()) {
    text.append(bytes.substr(0, mostText - text.size()));
    input.take(bytes.size());
  }
  return text;
}

std::string withoutLineEnd(std::string text) {
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

}  // namespace

BackgroundServices::BackgroundServices(platform::SystemOptions system, platform::BridgeOptions bridge,
                                       std::string mainFolder)
    : system_(std::move(system)),
      bridge_(std::move(bridge)),
      mainFolder_(std::move(mainFolder)),
      diary_(diaryFolder(bridge_, mainFolder_)) {}

std::unique_ptr<platform::System> BackgroundServices::open(const std::string& printInto) const {
  platform::SystemOptions options = system_;
  options.alsoTold = nullptr;
  options.printInto = printInto;
  options.pagesInto = platform::previewPages();
  auto opened = platform::openSystem(options);
  if (const auto* error = std::get_if<platform::SystemError>(&opened)) throw std::runtime_error(error->message);
  return std::move(std::get<std::unique_ptr<platform::System>>(opened));
}

/// The copy that serves the folder is the one with this window.
std::vector<Finding> BackgroundServices::check(bool network) {
  const auto system = open();
  const auto inspection = system->openInspection();
  return checkInstallation(system->host(), *inspection, system->options(),
                           {.mainFolder = mainFolder_, .servingProcess = platform::thisProcess(), .network = network});
}

std::string BackgroundServices::tryDevice(Device device) {
  return withoutLineEnd(tryOnce(open()->host(), bridge_, mainFolder_, device, true).text);
}

std::vector<Day> BackgroundServices::days() {
  const auto system = open();
  platform::Host& host = system->host();
  std::vector<Day> days = daysIn(host.files, diary_);
  const Day today = momentOf(host.clock).day;
  if (std::ranges::find(days, today) == days.end()) days.push_back(today);
  return days;
}

std::vector<DiaryEntry> BackgroundServices::entries(Day day) { return readDay(open()->host(), diary_, day); }

ui::JobLook BackgroundServices::lookAt(const DiaryEntry& entry) {
  ui::JobLook look;
  if (entry.copy.empty()) return look;
  const std::string copy = diary_ + "\\" + entry.copy;
  {
    const auto system = open();
    if (!system->host().files.exists(copy)) return look;
    look.text = textOf(system->host().files, copy);
  }
  if (entry.bytes <= longestPreview) addPages(look, entry, copy);
  return look;
}

void BackgroundServices::addPages(ui::JobLook& look, const DiaryEntry& entry, const std::string& copy) const {
  if (entry.device != Device::courtesyPrinter && entry.device != Device::slipPrinter) return;
  const ScratchFolder folder;
  const auto at = codePageFromUtf8(folder.path());
  if (!at || at->empty()) return;
  const auto system = open(folder.path());
  const PreviewRequest request{
      .mainFolder = mainFolder_, .device = entry.device, .job = copy, .workingAt = *at + "\\lavoro"};
  if (!printPreview(system->host(), request)) return;
  for (const std::string& text : folder.contentsOf(".txt")) look.printed += text;
  for (const char* ending : {".png", ".bmp"})
    for (std::string& page : folder.contentsOf(ending)) look.pages.push_back(std::move(page));
}

std::string BackgroundServices::reprint(const std::string& id, ReprintConsent consent) {
  const DiaryRequest request{.query = {}, .id = id, .consent = consent};
  return withoutLineEnd(reprintFromDiary(open()->host(), bridge_, mainFolder_, request, true).text);
}

}  // namespace tellaxis
