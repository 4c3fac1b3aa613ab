// A picture is written under a temporary name and renamed when it is complete: at every moment
// there is the earlier file or the new one, and nothing else is left behind.
#include "apps/files/picture_file.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <utility>

#include "apps/common/errors.h"

namespace kv {
namespace {

struct Picture_Rows {
  Size size;
  const Png_Notes& notes;
  const std::function<void(Png_Writer&)>& write;
};

constexpr int ending_signals[] = {SIGINT, SIGTERM, SIGHUP};

[[noreturn]] void fail(const std::string& path, const std::string& what) {
  throw Failure(Exit_Code::output, path, what, "the picture was not written");
}

[[noreturn]] void fail(const std::string& path, int error_number) {
  fail(path, system_words(error_number));
}

// Holds back the signals by which a user or the system ends a program, so that none of them leaves
// a temporary file behind. They take effect afterwards.
class Signals_Held {
 public:
  Signals_Held() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal_number : ending_signals)
      if (!is_ignored(signal_number)) sigaddset(&ending, signal_number);
    pthread_sigmask(SIG_BLOCK, &ending, &before_);
  }
  Signals_Held(const Signals_Held&) = delete;
  Signals_Held& operator=(const Signals_Held&) = delete;
  ~Signals_Held() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  // A signal that is ignored would wait all the same.
  static bool is_ignored(int signal_number) {
    struct sigaction action {};
    return sigaction(signal_number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
  }

  sigset_t before_;
};

class Stream {
 public:
  Stream(int file, std::string path) : stream_(fdopen(file, "wb")), path_(std::move(path)) {
    if (stream_) return;
    const int error_number = errno;
    close(file);
    fail(path_, error_number);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() {
    if (stream_) std::fclose(stream_);
  }

  void write(const Picture_Rows& rows) {
    try {
      Png_Writer writer(stream_, rows.size, rows.notes);
      rows.write(writer);
      writer.finish();
    } catch (const Failure&) {
      throw;
    } catch (const std::runtime_error& error) {
      fail(path_, error.what());
    }
    if (std::fflush(stream_) != 0) fail(path_, errno);
  }

  // Some file systems report a full disk only now.
  void finish() {
    if (std::fclose(std::exchange(stream_, nullptr)) != 0) fail(path_, errno);
  }

  int file() const { return fileno(stream_); }

 private:
  std::FILE* stream_;
  std::string path_;
};

void write_directly(const std::string& path, const Picture_Rows& rows) {
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (file < 0) fail(path, errno);
  Stream stream(file, path);
  stream.write(rows);
  stream.finish();
}

// A file that is removed unless it was renamed to its final name.
class Temporary_File {
 public:
  Temporary_File(const std::filesystem::path& target, const std::string& shown)
      : name_(hidden_beside(target)), file_(mkostemp(name_.data(), O_CLOEXEC)) {
    if (file_ < 0) fail(shown, errno);
  }
  Temporary_File(const Temporary_File&) = delete;
  Temporary_File& operator=(const Temporary_File&) = delete;
  ~Temporary_File() {
    if (!name_.empty()) unlink(name_.c_str());
  }

  int file() const { return file_; }

  void become(const std::filesystem::path& target, const std::string& shown) {
    if (std::rename(name_.c_str(), target.c_str()) != 0) fail(shown, errno);
    name_.clear();
  }

 private:
  // As mkostemp wants it.
  static std::string hidden_beside(const std::filesystem::path& target) {
    std::string name = ".";
    name += target.filename().string();
    name += ".XXXXXX";
    return (target.parent_path() / name).string();
  }

  std::string name_;
  int file_;
};

// The rights a new file gets; those of a temporary file are narrower.
mode_t usual_rights() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void write_and_rename(const std::string& path, const std::filesystem::path& target, mode_t rights,
                      const Picture_Rows& rows) {
  const Signals_Held signals_held;
  Temporary_File temporary(target, path);
  Stream stream(temporary.file(), path);
  stream.write(rows);
  if (fchmod(stream.file(), rights) != 0) fail(path, errno);
  stream.finish();
  temporary.become(target, path);
}

void write_file(const std::string& path, const Picture_Rows& rows) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) fail(path, errno);
    return write_and_rename(path, path, usual_rights(), rows);
  }
  if (S_ISDIR(status.st_mode)) fail(path, EISDIR);
  if (!S_ISREG(status.st_mode)) return write_directly(path, rows);
  if (access(path.c_str(), W_OK) != 0) fail(path, errno);
  // Of a symbolic link the target is replaced and not the link.
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  if (error) fail(path, error.message());
  write_and_rename(path, target, status.st_mode & 0777, rows);
}

}  // namespace

void write_picture_file(const std::string& path, const Picture& picture) {
  write_picture_file(path, {picture.width, picture.height}, {}, [&](Png_Writer& writer) {
    for (int y = 0; y < picture.height; ++y) writer.row(picture.row(y));
  });
}

void write_picture_file(const std::string& path, const Size& size, const Png_Notes& notes,
                        const std::function<void(Png_Writer&)>& write_rows) {
  write_file(path, {size, notes, write_rows});
}

void stop_if_asked() {
  sigset_t waiting;
  sigemptyset(&waiting);
  sigpending(&waiting);
  for (const int signal_number : ending_signals)
    if (sigismember(&waiting, signal_number) == 1) fail({}, "stopped by a signal");
}

}  // namespace kv
