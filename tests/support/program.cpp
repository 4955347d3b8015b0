#include "tests/support/program.hpp"

#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tests {

namespace {

/// Appends what is there to read; returns whether more can come.
bool drain(int descriptor, std::string& text) {
  char block[65536];
  const auto count = read(descriptor, block, sizeof block);
  if (count > 0) text.append(block, static_cast<std::size_t>(count));
  return count > 0;
}

}  // namespace

ProgramRun run(const std::vector<std::string>& arguments) {
  int output[2];
  int errors[2];
  if (pipe(output) != 0 || pipe(errors) != 0) return {};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
  for (const int end : {output[0], errors[0], output[1], errors[1]})
    posix_spawn_file_actions_addclose(&actions, end);
  std::vector<char*> words;
  for (const auto& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  pid_t child = 0;
  ProgramRun result;
  const int failed = posix_spawn(&child, words[0], &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(output[1]);
  close(errors[1]);

  pollfd ends[] = {{output[0], POLLIN, 0}, {errors[0], POLLIN, 0}};
  int open = failed == 0 ? 2 : 0;
  while (open > 0 && poll(ends, 2, -1) > 0) {
    for (int i = 0; i < 2; ++i) {
      if (ends[i].revents == 0) continue;
      if (drain(ends[i].fd, i == 0 ? result.output : result.errors)) continue;
      ends[i].fd = -1;
      --open;
    }
  }
  close(output[0]);
  close(errors[0]);
  int status = 0;
  if (failed != 0 || waitpid(child, &status, 0) != child) return result;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

}  // namespace tests
