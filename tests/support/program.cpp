#include "tests/support/program.hpp"

#include <glib.h>
#include <sys/wait.h>

#include "platform/foundation/raii.hpp"

namespace tests {

ProgramRun run(const std::vector<std::string>& arguments) {
  using Text = platform::Owned<char, g_free>;
  std::vector<std::string> bounded{"/usr/bin/timeout", "--kill-after=5", "60"};
  bounded.insert(bounded.end(), arguments.begin(), arguments.end());
  std::vector<char*> words;
  for (const auto& argument : bounded) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  char* output = nullptr;
  char* errors = nullptr;
  int status = 0;
  if (g_spawn_sync(nullptr, words.data(), nullptr, G_SPAWN_DEFAULT, nullptr, nullptr, &output,
                   &errors, &status, nullptr) == 0)
    return {};
  const Text ownedOutput(output), ownedErrors(errors);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), output, errors};
}

}  // namespace tests
