#include "tests/support/waiting.hpp"

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace tests {

using namespace std::chrono_literals;

void waitFor(const char* what, const std::function<bool()>& happened) {
  const auto deadline = std::chrono::steady_clock::now() + 30s;
  while (!happened()) {
    if (std::chrono::steady_clock::now() > deadline)
      throw std::runtime_error(std::string("waited in vain for ") + what);
    std::this_thread::sleep_for(5ms);
  }
}

}  // namespace tests
