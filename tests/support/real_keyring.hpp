#pragma once

#include <gio/gio.h>

#include <filesystem>
#include <string>

#include "platform/foundation/raii.hpp"

namespace tests {

/// A session bus with a keyring daemon on it, in an empty home; both end with it. The environment
/// points there from then on. A process can have one: libsecret keeps to the first bus it met.
/// Everything has a deadline; failures are std::runtime_error.
class RealKeyring {
 public:
  /// The keyring that is there from the start, open.
  static constexpr const char* login = "/org/freedesktop/secrets/collection/login";

  RealKeyring();
  ~RealKeyring();
  RealKeyring(const RealKeyring&) = delete;
  RealKeyring& operator=(const RealKeyring&) = delete;

  /// Makes a further keyring, open; returns its object path.
  std::string makeKeyring(const std::string& label);
  void lock(const std::string& keyring = login);
  void unlock(const std::string& keyring = login);
  /// Makes a keyring the default one; "/" leaves none.
  void setDefault(const std::string& keyring);

  /// Stores an item beside those that are there; returns its object path.
  std::string store(const std::string& account, const std::string& secret,
                    const std::string& keyring = login);
  void remove(const std::string& item);
  /// How many items there are for an account, locked ones too.
  int count(const std::string& account);
  /// Gives an item another secret once the clock shows another second than the items there have:
  /// from then on it is the one modified last.
  void modifyLast(const std::string& item, const std::string& secret);

  /// Whether the daemon works or, as if it hung, answers nothing.
  void setAnswering(bool answering);

 private:
  using Variant = platform::Owned<GVariant, g_variant_unref>;
  Variant call(const std::string& path, const char* interface, const char* method,
               GVariant* arguments);
  GVariant* secretStruct(const std::string& secret);

  std::filesystem::path home_;
  platform::Owned<GTestDBus, g_object_unref> bus_;
  platform::Owned<GDBusConnection, g_object_unref> connection_;
  platform::Owned<GSubprocess, g_object_unref> daemon_;
  std::string session_;
};

}  // namespace tests
