// Passage: the files of a folder on their way to another one, each opened once.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/linux/files/failed_moves.h"
#include "platform/linux/files/left_out.h"
#include "platform/linux/files/movable_files.h"
#include "platform/linux/files/open_jobs.h"
#include "platform/linux/files/settling.h"
#include "platform/linux/files/writer_hold.h"
#include "platform/linux/kernel/descriptor.h"
#include "platform/trace.h"

namespace tellaxis::platform {

/// What is remembered of files from one passage to the next.
struct SeenFiles {
  explicit SeenFiles(Trace& trace) : leftOut(trace) {}

  Settling settling;
  FailedMoves failedMoves;
  LeftOut leftOut;
  OpenJobs openJobs;
};

/// One end of a passage: a folder as people know it, as the disk has it (with its ending separator), and open.
struct PassageEnd {
  std::string shown;
  std::string native;
  Descriptor opened;
};

/// A file's descriptor, with its lease where the system gives one, serves from the first look to the move, and is kept
/// for what is done with the file then.
class LinuxPassage : public Passage {
 public:
  /// Null, with `errno`, when the folder could not be read.
  static std::unique_ptr<Passage> open(PassageEnd from, PassageEnd to, SeenFiles& seen, Trace& trace);

  std::optional<std::string> next() override;
  bool isTaken() override { return movable_.isNameTaken(name().capitals); }
  bool move() override;

 private:
  struct Name {
    std::string capitals;  ///< the text in upper case, by which names are compared
    std::string text;      ///< in code page 1252
    std::string onDisk;    ///< as the folder has it

    auto operator<=>(const Name&) const = default;
  };

  LinuxPassage(PassageEnd from, PassageEnd to, SeenFiles& seen, Trace& trace);
  bool readNames();
  bool hasName(std::string_view capitals) const;
  bool isRepeated() const;
  int whyNot();
  Hold holdOfFile(const struct stat& status) const;
  bool moveFile(const std::string& from, const std::string& to);

  const Name& name() const { return names_[taken_ - 1]; }

  PassageEnd from_;
  PassageEnd to_;
  SeenFiles& seen_;
  Trace& trace_;
  MovableFiles movable_;
  dev_t device_ = 0;        ///< of the folder that is left
  bool onNetwork_ = false;  ///< that device
  std::vector<Name> names_;
  std::size_t taken_ = 0;  ///< files whose turn has come
  Descriptor file_;
  Hold hold_ = Hold::unknown;
};

}  // namespace tellaxis::platform
