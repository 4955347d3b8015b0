#include <cstdint>
#include <string_view>

#include "fuzz/state_folder.hpp"
#include "platform/foundation/user_defaults.hpp"

// The file of the user defaults, whatever is in it: it is read, written and read again, or set
// aside and begun anew.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::StateFolder folder;
  const auto file = folder.with("defaults.sqlite3", {reinterpret_cast<const char*>(data), size});
  const platform::UserDefaults store(file);
  static_cast<void>(store.string("adsense.account"));
  static_cast<void>(store.data("snapshot"));
  store.setData("snapshot", "{}");
  static_cast<void>(store.data("snapshot"));
  store.remove("snapshot");
  return 0;
}
