#pragma once

#include <memory>

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

}  // namespace platform
