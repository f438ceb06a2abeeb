// FTP clients of Linux: local files, and what failed.
#include "platform/linux/ftp_client.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/files/finished_file.h"
#include "platform/linux/files/replacement.h"
#include "platform/linux/files/stale_files.h"
#include "platform/linux/ftp/ftp_library.h"
#include "platform/linux/kernel/loaded_library.h"
#include "platform/linux/kernel/reason.h"
#include "platform/linux/kernel/timed_write.h"
#include "platform/linux/kernel/uninterrupted.h"

namespace tellaxis::platform {

namespace {

/// Null when it cannot be loaded, which is reported to the trace; the next call tries again.
const FtpLibrary* ftpLibrary(Trace& trace) { return loadedLibrary<FtpLibrary>(ftpLibraryFile, ftpLibraryEntry, trace); }

class LinuxFtpClient : public FtpClient {
 public:
  LinuxFtpClient(std::unique_ptr<FtpSession> session, const Paths& paths, Trace& trace, const FtpLimits& limits,
                 std::function<bool()> stopped)
      : session_(std::move(session)), paths_(paths), trace_(trace), limits_(limits), stopped_(std::move(stopped)) {}

  FtpLogin logIn(std::string_view server, std::string_view user, std::string_view password,
                 std::string& reason) override {
    const auto failure = session_->logIn({server, user, password, "", limits_, stopped_});
    if (!failure) return FtpLogin::done;
    reason = failure->reason;
    trace_.failed("logIn", server, reason);
    return failure->refused ? FtpLogin::refused : FtpLogin::unreachable;
  }

  bool bQGetFile(std::string_view server, std::string_view user, std::string_view password, std::string_view remoteFile,
                 std::string_view localFile, TransferType /*type*/, bool overwrite) override {
    return noted("bQGetFile", remoteFile,
                 get({server, user, password, remoteFile, limits_, stopped_}, paths_.resolve(localFile), overwrite));
  }

  bool bQDeleteFile(std::string_view server, std::string_view user, std::string_view password,
                    std::string_view remoteFile) override {
    return noted("bQDeleteFile", remoteFile, session_->erase({server, user, password, remoteFile, limits_, stopped_}));
  }

  bool bQPutFile(std::string_view server, std::string_view user, std::string_view password, std::string_view localFile,
                 std::string_view remoteFile, TransferType /*type*/) override {
    return noted("bQPutFile", remoteFile,
                 put({server, user, password, remoteFile, limits_, stopped_}, paths_.resolve(localFile)));
  }

 private:
  using Failure = std::optional<std::string>;
  static constexpr const char* noLocalName = "il nome del file locale non \xE8 valido";

  bool noted(std::string_view operation, std::string_view subject, const Failure& failure) {
    if (failure) trace_.failed(operation, subject, *failure);
    return !failure;
  }

  Failure get(const FtpRequest& request, const std::optional<std::string>& local, bool overwrite) {
    if (!local) return noLocalName;
    struct stat status {};
    if (!overwrite && ::stat(local->c_str(), &status) == 0) return reasonOf(EEXIST);
    removeStaleFiles(local->substr(0, local->rfind('/') + 1));
    Failure failure;
    int error = 0;
    const bool replaced = replaceContent(paths_, *local, {}, [&](const Descriptor& file) {
      std::uint64_t left = roomFor(file);
      failure = session_->get(request, [&](std::string_view bytes) {
        const bool fits = bytes.size() <= left;
        left -= fits ? bytes.size() : 0;
        const bool written = fits && writeAll(file, bytes);
        if (!written) error = fits ? errno : EFBIG;
        return written;
      });
      return !failure;
    });
    if (replaced) return std::nullopt;
    if (failure && error == 0) return failure;
    return reasonOf(error != 0 ? error : errno);
  }

  /// How many bytes a download may bring to the disk that `file` is on.
  std::uint64_t roomFor(const Descriptor& file) const {
    struct statvfs disk {};
    if (::fstatvfs(file.number(), &disk) != 0) return std::numeric_limits<std::uint64_t>::max();
    return static_cast<std::uint64_t>(static_cast<double>(disk.f_bavail) * static_cast<double>(disk.f_frsize) *
                                      limits_.largestShare);
  }

  Failure put(const FtpRequest& request, const std::optional<std::string>& local) {
    if (request.remoteFile.empty()) return "manca il nome del file remoto";
    if (!local) return noLocalName;
    const Descriptor file = openRegularFile(AT_FDCWD, local->c_str(), LastLink::followed);
    struct stat status {};
    if (!file || ::fstat(file.number(), &status) != 0) return reasonOf(errno);
    int error = 0;
    const auto give = [&](std::span<char> buffer) -> std::optional<std::size_t> {
      const ssize_t got = untilUninterrupted([&] { return ::read(file.number(), buffer.data(), buffer.size()); });
      if (got >= 0) return static_cast<std::size_t>(got);
      error = errno;
      return std::nullopt;
    };
    const Failure failure = session_->put(request, static_cast<std::uint64_t>(status.st_size), give);
    return failure && error != 0 ? reasonOf(error) : failure;
  }

  std::unique_ptr<FtpSession> session_;
  const Paths& paths_;
  Trace& trace_;
  FtpLimits limits_;
  std::function<bool()> stopped_;
};

}  // namespace

std::unique_ptr<FtpClient> LinuxFtpClients::create() {
  const FtpLibrary* library = ftpLibrary(trace_);
  if (library == nullptr) return nullptr;
  std::unique_ptr<FtpSession> session = library->open();
  if (!session) {
    trace_.failed("FTP", "libcurl", reasonOf(ENOMEM));
    return nullptr;
  }
  return std::make_unique<LinuxFtpClient>(std::move(session), paths_, trace_, limits_, stopped_);
}

}  // namespace tellaxis::platform
