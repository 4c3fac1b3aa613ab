// A job in a forked process under limits of time, memory and answer. However it ends, the parent
// has a result, and no process is left.
#include "apps/load/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <new>
#include <system_error>
#include <thread>

namespace kv {
namespace {

using Clock = std::chrono::steady_clock;

enum Child_Status { status_answered = 0, status_broke_off = 1, status_out_of_memory = 2 };

void set_limit(int resource, rlim_t soft, rlim_t hard) {
  rlimit limit{};
  if (getrlimit(static_cast<__rlimit_resource_t>(resource), &limit) != 0) return;
  limit.rlim_max = std::min(hard, limit.rlim_max);
  limit.rlim_cur = std::min(soft, limit.rlim_max);
  setrlimit(static_cast<__rlimit_resource_t>(resource), &limit);
}

void confine(const Child_Limits& limits) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const int signal_number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGXCPU, SIGPIPE})
    signal(signal_number, SIG_DFL);
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nowhere < 0) _exit(status_broke_off);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
  if (nowhere > STDERR_FILENO) close(nowhere);
  const auto seconds = static_cast<rlim_t>(std::ceil(limits.seconds));
  set_limit(RLIMIT_CPU, seconds + 1, seconds + 2);
  set_limit(RLIMIT_CORE, 0, 0);
  set_limit(RLIMIT_FSIZE, 0, 0);
  if (child_memory_is_limited) set_limit(RLIMIT_AS, limits.memory_bytes, limits.memory_bytes);
}

void send_all(int pipe_end, std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = write(pipe_end, bytes.data(), bytes.size());
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) _exit(status_broke_off);
    bytes = bytes.subspan(static_cast<std::size_t>(sent));
  }
}

[[noreturn]] void be_the_child(int pipe_end, const Child_Limits& limits, const Child_Job& job) {
  int status = status_answered;
  try {
    // Out of the way of the standard streams, in case one of these was closed.
    const int answer_end = fcntl(pipe_end, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (answer_end < 0) _exit(status_broke_off);
    close(pipe_end);
    confine(limits);
    job([answer_end](std::span<const std::byte> bytes) { send_all(answer_end, bytes); });
  } catch (const std::bad_alloc&) {
    status = status_out_of_memory;
  } catch (...) {
    status = status_broke_off;
  }
  _exit(status);  // no destructors and exit handlers: they belong to the parent
}

// The parent's hold on the child: never leaves a running process or a zombie behind.
class Child {
 public:
  Child(pid_t pid, int answer_end) : pid_(pid), answer_end_(answer_end) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    close(answer_end_);
    if (pid_ <= 0) return;
    kill(pid_, SIGKILL);
    while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) continue;
  }

  Child_Result result(const Child_Limits& limits) {
    const auto patience = std::chrono::duration<double>(limits.seconds);
    deadline_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(patience);
    Child_Result result;
    result.end = receive(limits.answer_bytes, limits.while_waiting, result.answer);
    if (result.end == Child_End::answered) result.end = join(result.signal);
    if (result.end != Child_End::answered) result.answer.clear();
    return result;
  }

 private:
  // Reads until the child closes its end of the pipe.
  Child_End receive(std::size_t longest, const std::function<void()>& while_waiting,
                    std::vector<std::byte>& answer) {
    constexpr long interval_ms = 200;
    std::vector<std::byte> buffer(std::size_t{1} << 18);
    while (true) {
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
      if (left <= 0) return Child_End::out_of_time;
      pollfd waiting{answer_end_, POLLIN, 0};
      if (poll(&waiting, 1, static_cast<int>(std::min<long>(left, interval_ms))) <= 0) {
        if (while_waiting) while_waiting();
        continue;
      }
      const ssize_t got = read(answer_end_, buffer.data(), buffer.size());
      if (got == 0) return Child_End::answered;
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) return Child_End::broke_off;
      if (static_cast<std::size_t>(got) > longest - answer.size())
        return Child_End::answer_too_long;
      answer.insert(answer.end(), buffer.begin(), buffer.begin() + got);
    }
  }

  Child_End join(int& signal_number) {
    int status = 0;
    while (true) {
      const pid_t joined = waitpid(pid_, &status, WNOHANG);
      if (joined == pid_) break;
      if (joined < 0 && errno != EINTR) return Child_End::broke_off;
      if (Clock::now() >= deadline_) return Child_End::out_of_time;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    pid_ = 0;
    if (WIFSIGNALED(status)) signal_number = WTERMSIG(status);
    return meaning(status);
  }

  static Child_End meaning(int status) {
    if (WIFSIGNALED(status))
      return WTERMSIG(status) == SIGXCPU ? Child_End::out_of_time : Child_End::crashed;
    switch (WEXITSTATUS(status)) {
      case status_answered:
        return Child_End::answered;
      case status_out_of_memory:
        return Child_End::out_of_memory;
      default:
        return Child_End::broke_off;
    }
  }

  pid_t pid_;
  int answer_end_;
  Clock::time_point deadline_{};
};

}  // namespace

Child_Result run_in_child(const Child_Limits& limits, const Child_Job& job) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0)
    throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
  const pid_t pid = fork();
  if (pid < 0) {
    const int error_number = errno;
    close(ends[0]);
    close(ends[1]);
    throw std::system_error(error_number, std::generic_category(), "cannot start a process");
  }
  if (pid == 0) {
    close(ends[0]);
    be_the_child(ends[1], limits, job);
  }
  close(ends[1]);
  return Child(pid, ends[0]).result(limits);
}

}  // namespace kv
