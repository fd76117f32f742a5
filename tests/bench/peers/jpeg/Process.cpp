#include "Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <stdexcept>

extern char** environ;

namespace kestrel::bench {
namespace {

/// Starts the program with its standard output redirected to `output`.
pid_t start(const std::vector<std::string>& command, int output) {
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  pid_t child = 0;
  const int error = posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("cannot start " + command[0]);
  return child;
}

std::string readAll(int input) {
  std::string text;
  std::array<char, 4096> piece;
  ssize_t got = 0;
  while ((got = read(input, piece.data(), piece.size())) > 0 || (got < 0 && errno == EINTR)) {
    if (got > 0) text.append(piece.data(), static_cast<std::size_t>(got));
  }
  return text;
}

}  // namespace

std::string runProcess(const std::vector<std::string>& command) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  const pid_t child = start(command, ends[1]);
  close(ends[1]);
  const std::string text = readAll(ends[0]);
  close(ends[0]);
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw std::runtime_error("cannot wait for " + command[0]);
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error(command[0] + " has failed");
  return text;
}

}  // namespace kestrel::bench
