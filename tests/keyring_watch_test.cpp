#include "desktop/keyring_watch.hpp"

#include <gmock/gmock.h>

#include "platform/foundation/glib.hpp"
#include "tests/support/environment.hpp"

using desktop::KeyringWatch;
using platform::Reference;

namespace {

constexpr const char* path = "/org/freedesktop/secrets/aliases/default";
constexpr const char* description =
    "<node><interface name='org.freedesktop.Secret.Collection'>"
    "<property name='Locked' type='b' access='read'/></interface></node>";

/// A keyring on a bus of its own, which does as it is told.
class Keyrings : public tests::Environment {
 protected:
  Keyrings() : daemon_(g_test_dbus_new(G_TEST_DBUS_NONE)) {
    g_test_dbus_up(daemon_.get());
    watching_ = connect();
    keyring_ = connect();
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(description, nullptr);
    static const GDBusInterfaceVTable table{nullptr, isLocked, nullptr, {}};
    g_dbus_connection_register_object(keyring_.get(), path, node->interfaces[0], &table, this,
                                      nullptr, nullptr);
    g_dbus_node_info_unref(node);
  }
  ~Keyrings() override {
    watching_.reset();
    keyring_.reset();
    g_test_dbus_down(daemon_.get());
  }

  void comeUp() {
    g_bus_own_name_on_connection(keyring_.get(), "org.freedesktop.secrets",
                                 G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
    settle();
  }

  void unlock() {
    locked_ = false;
    g_dbus_connection_emit_signal(keyring_.get(), nullptr, path, "org.example.Own", "Unlocked",
                                  nullptr, nullptr);
    settle();
  }

  /// Lets everything that is on its way arrive.
  void settle() const {
    for (int round = 0; round < 4; ++round) {
      for (auto* bus : {keyring_.get(), watching_.get()})
        g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus.Peer",
                                    "Ping", nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE, 5000, nullptr,
                                    nullptr);
      while (g_main_context_iteration(nullptr, FALSE) != FALSE) continue;
    }
  }

  Reference<GTestDBus> daemon_;
  Reference<GDBusConnection> watching_;
  Reference<GDBusConnection> keyring_;
  bool locked_ = true;
  int opened_ = 0;

 private:
  Reference<GDBusConnection> connect() const {
    return Reference<GDBusConnection>(g_dbus_connection_new_for_address_sync(
        g_test_dbus_get_bus_address(daemon_.get()),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
  }
  static GVariant* isLocked(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                            const gchar*, GError**, gpointer keyrings) {
    return g_variant_new_boolean(static_cast<Keyrings*>(keyrings)->locked_ ? TRUE : FALSE);
  }
};

}  // namespace

TEST_F(Keyrings, thatOpenAreToldWheneverItHappens) {
  enum When { beforeTheAnswer, afterTheAnswer };
  comeUp();
  for (const auto when : {beforeTheAnswer, afterTheAnswer}) {
    locked_ = true;
    opened_ = 0;
    KeyringWatch watch(watching_.get(), [this] { ++opened_; });
    watch.noteQuestion();
    settle();
    if (when == beforeTheAnswer) unlock();
    EXPECT_EQ(opened_, 0) << "while the widget may still find it open";
    watch.noteAnswer(false);
    if (when == afterTheAnswer) unlock();
    EXPECT_EQ(opened_, 1);
  }
}

TEST_F(Keyrings, thatComeUpLateAreToldToo) {
  KeyringWatch watch(watching_.get(), [this] { ++opened_; });
  watch.noteQuestion();
  settle();
  watch.noteAnswer(false);
  locked_ = false;
  comeUp();
  EXPECT_EQ(opened_, 1);
}

TEST_F(Keyrings, thatAreOpenOrNeededNoLongerAreNotWatched) {
  comeUp();
  KeyringWatch watch(watching_.get(), [this] { ++opened_; });
  watch.noteQuestion();
  settle();
  watch.noteAnswer(true);
  unlock();
  EXPECT_EQ(opened_, 0) << "somebody is signed in";
  watch.noteQuestion();
  settle();
  watch.noteAnswer(false);
  unlock();
  EXPECT_EQ(opened_, 0) << "it was open all the time";
}
