// Files: looking up, moving and reading files in memory.
#include "fake/files.h"

#include <algorithm>
#include <cstring>

#include "platform/files/listed_passage.h"
#include "text/letter_case.h"

namespace tellaxis::fake {

namespace {

std::string bareName(std::string_view path) { return std::string(path.substr(path.rfind('\\') + 1)); }

std::string withoutBackslash(std::string_view folder) {
  return lower(folder.ends_with('\\') ? folder.substr(0, folder.size() - 1) : folder);
}

/// Reads a text in memory; each read is a call.
class InputText : public platform::InputFile {
 public:
  InputText(Journal& journal, std::multiset<std::string>& open, std::string path, std::string text)
      : journal_(journal), open_(open), path_(std::move(path)), text_(std::move(text)) {
    open_.insert(lower(path_));
  }
  ~InputText() override { open_.erase(open_.find(lower(path_))); }
  InputText(const InputText&) = delete;
  InputText& operator=(const InputText&) = delete;

  std::optional<std::size_t> read(std::span<char> buffer) override {
    if (!journal_.record("read " + path_)) return std::nullopt;
    const std::size_t size = std::min(buffer.size(), text_.size() - position_);
    std::memcpy(buffer.data(), text_.data() + position_, size);
    position_ += size;
    return size;
  }

 private:
  Journal& journal_;
  std::multiset<std::string>& open_;
  std::string path_;
  std::string text_;
  std::size_t position_ = 0;
};

}  // namespace

void Files::put(std::string_view path, std::string_view text) {
  files_[lower(path)] = File{.name = bareName(path), .text = std::string(text), .number = ++lastNumber_};
}

std::string Files::text(std::string_view path) const {
  const auto found = files_.find(lower(path));
  return found == files_.end() ? std::string() : found->second.text;
}

std::vector<std::string> Files::namesIn(std::string_view folder) const {
  const std::string prefix = withoutBackslash(folder) + "\\";
  std::vector<std::string> names;
  for (const auto& [path, file] : files_)
    if (path.starts_with(prefix) && path.find('\\', prefix.size()) == std::string::npos) names.push_back(file.name);
  return names;
}

bool Files::isMissing(std::string_view folder) const { return missingFolders_.contains(withoutBackslash(folder)); }

bool Files::takes(std::string_view path) const {
  const std::string folder = lower(path.substr(0, path.size() - bareName(path).size()));
  return !isMissing(folder) && !fullFolders_.contains(withoutBackslash(folder));
}

bool Files::exists(std::string_view path) { return journal_.record("exists " + std::string(path)) && has(path); }

std::optional<std::string> Files::lookUp(std::string_view path) {
  if (!journal_.record("lookUp " + std::string(path)) || !has(path)) return std::nullopt;
  return files_.at(lower(path)).name;
}

std::optional<platform::FileIdentity> Files::identity(std::string_view path) {
  if (!journal_.record("identity " + std::string(path)) || !has(path)) return std::nullopt;
  const File& file = files_.at(lower(path));
  return platform::FileIdentity{.device = 1, .file = file.number, .size = file.text.size()};
}

bool Files::folderExists(std::string_view path) {
  return journal_.record("folderExists " + std::string(path)) && folders_.contains(withoutBackslash(path));
}

bool Files::isUnreachable(std::string_view folder) {
  if (!journal_.record("isUnreachable " + std::string(folder))) return false;
  const auto found = unreachable_.find(lower(folder));
  return found != unreachable_.end() && --found->second > 0;
}

bool Files::createFolder(std::string_view path) {
  if (!journal_.record("createFolder " + std::string(path))) return false;
  return folders_.insert(withoutBackslash(path)).second;
}

std::optional<std::vector<std::string>> Files::list(std::string_view folder) {
  if (!journal_.record("list " + std::string(folder)) || isMissing(folder)) return std::nullopt;
  std::vector<std::string> names = namesIn(folder);
  std::ranges::sort(names, lessIgnoringCase);
  return names;
}

std::unique_ptr<platform::Passage> Files::openPassage(std::string_view folder, std::string_view target) {
  if (!journal_.record("list " + std::string(folder)) || isMissing(folder) || isMissing(target)) return nullptr;
  std::vector<std::string> names = namesIn(folder);
  std::ranges::sort(names, lessIgnoringCase);
  const auto isMovable = [this, from = withoutBackslash(folder) + "\\",
                          to = withoutBackslash(target) + "\\"](std::string_view name) {
    const std::string replaced = to + lower(name);
    return !isFixed(from + lower(name)) && !(has(replaced) && isFixed(replaced));
  };
  return std::make_unique<platform::ListedPassage>(*this, folder, target, std::move(names), isMovable);
}

bool Files::canRead(std::string_view path, bool stepSucceeds) {
  if (!has(path)) return false;
  const bool given = stepSucceeds && !held_.contains(lower(path));
  readings_.note(lower(path), given ? platform::Readings::Outcome::given : platform::Readings::Outcome::refused);
  return given;
}

bool Files::copy(std::string_view from, std::string_view to) {
  if (!journal_.record("copy " + std::string(from) + " -> " + std::string(to)) || !canRead(from, true)) return false;
  if (!takes(to)) return false;
  put(to, text(from));
  return true;
}

bool Files::move(std::string_view from, std::string_view to) {
  if (!journal_.record("move " + std::string(from) + " -> " + std::string(to))) return false;
  if (!has(from) || has(to) || isInUse(from) || !takes(to)) return false;
  put(to, text(from));
  erase(from);
  return true;
}

bool Files::remove(std::string_view path) {
  if (!journal_.record("remove " + std::string(path)) || !has(path) || isInUse(path)) return false;
  if (readings_.take(lower(path)) == platform::Readings::Outcome::refused) return false;
  if (protected_.contains(lower(path))) return false;
  erase(path);
  return true;
}

bool Files::canRemove(std::string_view path) {
  return journal_.record("canRemove " + std::string(path)) && has(path) && !protected_.contains(lower(path));
}

bool Files::removeAll(std::string_view folder) {
  if (!journal_.record("removeAll " + std::string(folder)) || isMissing(folder)) return false;
  for (const std::string& name : namesIn(folder)) erase(withoutBackslash(folder) + "\\" + name);
  return true;
}

bool Files::removeFolder(std::string_view path) {
  if (!journal_.record("removeFolder " + std::string(path)) || !namesIn(path).empty()) return false;
  return folders_.erase(withoutBackslash(path)) > 0;
}

std::unique_ptr<platform::InputFile> Files::openInput(std::string_view path) {
  if (!canRead(path, journal_.record("openInput " + std::string(path)))) return nullptr;
  return std::make_unique<InputText>(journal_, open_, std::string(path), text(path));
}

bool Files::append(std::string_view path, std::string_view text) {
  if (!journal_.record("append " + std::string(path) + " " + std::string(text)) || !takes(path)) return false;
  put(path, this->text(path) + std::string(text));
  return true;
}

bool Files::create(std::string_view path, std::string_view text, platform::Readers readers) {
  const std::string kind = readers == platform::Readers::ownerAlone  ? "create owner-only "
                           : readers == platform::Readers::everybody ? "create for-everybody "
                                                                     : "create ";
  if (!journal_.record(kind + std::string(path) + " " + std::string(text)) || !takes(path)) return false;
  put(path, text);
  return true;
}

}  // namespace tellaxis::fake
