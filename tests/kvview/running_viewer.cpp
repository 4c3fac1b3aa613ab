#include "tests/kvview/running_viewer.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

Running_Viewer::Running_Viewer(const std::string& folder,
                               const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  pid_ = fork();
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::vector<std::string> copies = arguments;
    std::vector<char*> words;
    std::string program = KVVIEW;
    words.push_back(program.data());
    for (std::string& argument : copies) words.push_back(argument.data());
    words.push_back(nullptr);
    dup2(ends[1], STDOUT_FILENO);
    if (chdir(folder.c_str()) == 0) execv(KVVIEW, words.data());
    _exit(127);
  }
  close(ends[1]);
  output_ = ends[0];
}

Running_Viewer::~Running_Viewer() {
  close(output_);
  if (pid_ < 0) return;
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

std::string Running_Viewer::next_line() {
  constexpr int patience_ms = 20000;
  std::string line;
  pollfd ready{output_, POLLIN, 0};
  for (char c; poll(&ready, 1, patience_ms) > 0 && read(output_, &c, 1) == 1 && c != '\n';)
    line += c;
  return line;
}

int Running_Viewer::exit_code() {
  int status = 0;
  waitpid(pid_, &status, 0);
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
