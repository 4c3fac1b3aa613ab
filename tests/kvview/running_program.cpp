// The program is a child of the test and ends with it, however the test ends.
#include "tests/kvview/running_program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

Running_Program::Running_Program(const std::string& folder, const std::vector<std::string>& words) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  pid_ = fork();
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    dup2(ends[1], STDOUT_FILENO);
    if (chdir(folder.c_str()) == 0) execv(arguments[0], arguments.data());
    _exit(127);
  }
  close(ends[1]);
  output_ = ends[0];
}

Running_Program::~Running_Program() {
  close(output_);
  if (pid_ < 0) return;
  kill(pid_, SIGTERM);
  waitpid(pid_, nullptr, 0);
}

std::string Running_Program::next_line() const {
  constexpr int patience_ms = 20000;
  std::string line;
  pollfd ready{output_, POLLIN, 0};
  for (char c; poll(&ready, 1, patience_ms) > 0 && read(output_, &c, 1) == 1 && c != '\n';)
    line += c;
  return line;
}

int Running_Program::exit_code() {
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
