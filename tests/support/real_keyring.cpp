#include "tests/support/real_keyring.hpp"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <thread>

namespace tests {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr const char* service = "/org/freedesktop/secrets";
constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* password = "keyring password";
constexpr const char* internals = "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface";

void waitFor(const char* what, const std::function<bool()>& happened) {
  const auto deadline = std::chrono::steady_clock::now() + 10s;
  while (!happened()) {
    if (std::chrono::steady_clock::now() > deadline)
      throw std::runtime_error(std::string("waited in vain for ") + what);
    std::this_thread::sleep_for(20ms);
  }
}

/// Starts a program that ends with this one, quietly, with a text on its standard input.
pid_t start(const std::vector<const char*>& arguments, const std::string& input) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const platform::Descriptor output(ends[0]), text(ends[1]);
  const pid_t child = fork();
  if (child == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(output.get(), STDIN_FILENO);
    if (freopen("/dev/null", "w", stdout) && freopen("/dev/null", "w", stderr)) {
      close(text.get());
      execvp(arguments[0], const_cast<char* const*>(arguments.data()));
    }
    _exit(127);
  }
  if (write(text.get(), input.data(), input.size()) < 0) throw std::runtime_error("no input");
  return child;
}

}  // namespace

RealKeyring::RealKeyring() {
  std::string pattern = (fs::temp_directory_path() / "velmora-keyring-XXXXXX").string();
  home_ = mkdtemp(pattern.data());
  const auto address = "unix:path=" + (home_ / "bus").string();
  for (const char* folder : {"HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME"})
    setenv(folder, home_.c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
  for (const char* other : {"SECRET_BACKEND", "DISPLAY", "WAYLAND_DISPLAY"}) unsetenv(other);

  const auto option = "--address=" + address;
  children_[0] = start({"dbus-daemon", "--session", "--nofork", option.c_str(), nullptr}, "");
  waitFor("the session bus", [&] {
    bus_.reset(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    return bus_ != nullptr;
  });
  children_[1] =
      start({"gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets", nullptr},
            password);
  waitFor("the keyring daemon", [&] {
    GError* failure = nullptr;
    const Variant owned(
        g_dbus_connection_call_sync(bus_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                    "NameHasOwner", g_variant_new("(s)", serviceName), nullptr,
                                    G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, &failure));
    g_clear_error(&failure);
    gboolean there = 0;
    if (owned) g_variant_get(owned.get(), "(b)", &there);
    return there != 0;
  });
  const auto opened = call(service, "org.freedesktop.Secret.Service", "OpenSession",
                           g_variant_new_parsed("('plain', <''>)"));
  const char* session = nullptr;
  g_variant_get(opened.get(), "(v&o)", nullptr, &session);
  session_ = session;
}

RealKeyring::~RealKeyring() {
  for (const pid_t child : {children_[1], children_[0]}) {
    if (child > 0 && kill(child, SIGKILL) == 0) waitpid(child, nullptr, 0);
  }
  std::error_code ignored;
  fs::remove_all(home_, ignored);
}

RealKeyring::Variant RealKeyring::call(const std::string& path, const char* interface,
                                       const char* method, GVariant* arguments) {
  GError* failure = nullptr;
  Variant answer(g_dbus_connection_call_sync(bus_.get(), serviceName, path.c_str(), interface,
                                             method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE,
                                             5000, nullptr, &failure));
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

void RealKeyring::modifyLast(const std::string& item, const std::string& secret) {
  // Times of modification are whole seconds.
  const auto stored = std::time(nullptr);
  waitFor("the next second", [&] { return std::time(nullptr) > stored; });
  call(item, "org.freedesktop.Secret.Item", "SetSecret",
       g_variant_new("(@(oayays))", secretStruct(secret)));
}

void RealKeyring::setAnswering(bool answering) {
  kill(children_[1], answering ? SIGCONT : SIGSTOP);
}

}  // namespace tests
