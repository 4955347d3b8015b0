#include "tests/support/real_keyring.hpp"

#include <csignal>
#include <cstring>
#include <ctime>
#include <stdexcept>

#include "tests/support/waiting.hpp"

namespace tests {

namespace fs = std::filesystem;

namespace {

constexpr const char* service = "/org/freedesktop/secrets";
constexpr const char* password = "keyring password";
constexpr const char* internals = "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface";

}  // namespace

RealKeyring::RealKeyring() : bus_(g_test_dbus_new(G_TEST_DBUS_NONE)) {
  std::string pattern = (fs::temp_directory_path() / "velmora-keyring-XXXXXX").string();
  home_ = mkdtemp(pattern.data());
  for (const char* folder : {"HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME"})
    setenv(folder, home_.c_str(), 1);
  for (const char* other : {"SECRET_BACKEND", "DISPLAY", "WAYLAND_DISPLAY"}) unsetenv(other);
  g_test_dbus_up(bus_.get());
  connection_.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  constexpr auto quietly = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE |
                                                         G_SUBPROCESS_FLAGS_STDOUT_SILENCE |
                                                         G_SUBPROCESS_FLAGS_STDERR_SILENCE);
  daemon_.reset(g_subprocess_new(quietly, nullptr, "gnome-keyring-daemon", "--foreground",
                                 "--unlock", "--components=secrets", nullptr));
  if (!connection_ || !daemon_) throw std::runtime_error("no bus or no gnome-keyring-daemon");
  auto* input = g_subprocess_get_stdin_pipe(daemon_.get());
  g_output_stream_write(input, password, std::strlen(password), nullptr, nullptr);
  g_output_stream_close(input, nullptr, nullptr);
  waitFor("the keyring daemon", [this] {
    try {
      const auto opened = call(service, "org.freedesktop.Secret.Service", "OpenSession",
                               g_variant_new_parsed("('plain', <''>)"));
      const char* session = nullptr;
      g_variant_get(opened.get(), "(v&o)", nullptr, &session);
      session_ = session;
    } catch (const std::runtime_error&) {
      return false;  // not yet on the bus
    }
    return true;
  });
}

RealKeyring::~RealKeyring() {
  if (daemon_) g_subprocess_force_exit(daemon_.get());
  // To take it "down", which its end does as well, would be to wait for libsecret to let go of it.
  g_test_dbus_stop(bus_.release());
  std::error_code ignored;
  fs::remove_all(home_, ignored);
}

RealKeyring::Variant RealKeyring::call(const std::string& path, const char* interface,
                                       const char* method, GVariant* arguments) {
  GError* failure = nullptr;
  Variant answer(g_dbus_connection_call_sync(connection_.get(), "org.freedesktop.secrets",
                                             path.c_str(), interface, method, arguments, nullptr,
                                             G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, &failure));
  const platform::Owned<GError, g_error_free> error(failure);
  if (error) throw std::runtime_error(std::string(method) + ": " + error->message);
  return answer;
}

GVariant* RealKeyring::secretStruct(const std::string& secret) {
  const auto bytes = [](const std::string& text) {
    return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, text.data(), text.size(), 1);
  };
  return g_variant_new("(o@ay@ays)", session_.c_str(), bytes(""), bytes(secret), "text/plain");
}

std::string RealKeyring::makeKeyring(const std::string& label) {
  const auto made = call(
      service, internals, "CreateWithMasterPassword",
      g_variant_new(
          "(@a{sv}@(oayays))",
          g_variant_new_parsed("{'org.freedesktop.Secret.Collection.Label': <%s>}", label.c_str()),
          secretStruct(password)));
  const char* path = nullptr;
  g_variant_get(made.get(), "(&o)", &path);
  return path;
}

void RealKeyring::lock(const std::string& keyring) {
  call(service, "org.freedesktop.Secret.Service", "Lock",
       g_variant_new_parsed("([%o],)", keyring.c_str()));
}

void RealKeyring::unlock(const std::string& keyring) {
  call(service, internals, "UnlockWithMasterPassword",
       g_variant_new("(o@(oayays))", keyring.c_str(), secretStruct(password)));
}

void RealKeyring::setDefault(const std::string& keyring) {
  call(service, "org.freedesktop.Secret.Service", "SetAlias",
       g_variant_new("(so)", "default", keyring.c_str()));
}

std::string RealKeyring::store(const std::string& account, const std::string& secret,
                               const std::string& keyring) {
  auto* properties = g_variant_new_parsed(
      "{'org.freedesktop.Secret.Item.Label': <'Velmora'>, 'org.freedesktop.Secret.Item.Attributes':"
      " <{'service': 'com.brenvik.velmora', 'account': %s,"
      " 'access-group': 'Q7M2K9D4XW.com.brenvik.velmora.shared'}>}",
      account.c_str());
  const auto made =
      call(keyring, "org.freedesktop.Secret.Collection", "CreateItem",
           g_variant_new("(@a{sv}@(oayays)b)", properties, secretStruct(secret), FALSE));
  const char* item = nullptr;
  g_variant_get(made.get(), "(&o&o)", &item, nullptr);
  return item;
}

void RealKeyring::remove(const std::string& item) {
  call(item, "org.freedesktop.Secret.Item", "Delete", nullptr);
}

int RealKeyring::count(const std::string& account) {
  const auto found = call(service, "org.freedesktop.Secret.Service", "SearchItems",
                          g_variant_new_parsed("({'account': %s},)", account.c_str()));
  const Variant open(g_variant_get_child_value(found.get(), 0));
  const Variant locked(g_variant_get_child_value(found.get(), 1));
  return static_cast<int>(g_variant_n_children(open.get()) + g_variant_n_children(locked.get()));
}

void RealKeyring::modifyLast(const std::string& item, const std::string& secret) {
  // Times of modification are whole seconds.
  const auto stored = std::time(nullptr);
  waitFor("the next second", [&] { return std::time(nullptr) > stored; });
  call(item, "org.freedesktop.Secret.Item", "SetSecret",
       g_variant_new("(@(oayays))", secretStruct(secret)));
}

void RealKeyring::setAnswering(bool answering) {
  g_subprocess_send_signal(daemon_.get(), answering ? SIGCONT : SIGSTOP);
}

}  // namespace tests
