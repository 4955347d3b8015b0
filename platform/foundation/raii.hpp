#pragma once

#include <unistd.h>

#include <memory>
#include <utility>

namespace platform {

/// Calls a C library's release function; the deleter behind every handle alias.
template <auto release>
struct ReleaseWith {
  template <class Handle>
  void operator()(Handle* handle) const {
    release(handle);
  }
};

/// Owns one handle of a C library: `using Database = Owned<sqlite3, sqlite3_close_v2>;`.
template <class Handle, auto release>
using Owned = std::unique_ptr<Handle, ReleaseWith<release>>;

/// Owns one file descriptor; -1 is none.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  explicit operator bool() const { return number_ >= 0; }
  [[nodiscard]] int get() const { return number_; }
  /// Hands the number over to somebody else who closes it.
  [[nodiscard]] int release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

}  // namespace platform
