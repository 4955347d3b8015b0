#include "desktop/notifications.hpp"

#include <algorithm>
#include <memory>

#include "desktop/open_companion.hpp"
#include "platform/processes/guarded.hpp"

namespace desktop {

namespace {

constexpr const char* service = "org.freedesktop.Notifications";
constexpr const char* path = "/org/freedesktop/Notifications";
constexpr int deadline = 5000;  // milliseconds
constexpr std::int32_t asLongAsTheServiceLikes = -1;

/// The reply; null after any failure. `wasCancelled`: whoever asked is gone.
platform::GValueTree replyOf(GObject* bus, GAsyncResult* result, bool& wasCancelled) {
  GError* failure = nullptr;
  platform::GValueTree reply(
      g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &failure));
  const platform::GFailure error(failure);
  wasCancelled = g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
  return reply;
}

bool contains(GVariant* texts, const char* text) {
  GVariantIter list;
  g_variant_iter_init(&list, texts);
  const char* each = nullptr;
  while (g_variant_iter_next(&list, "&s", &each) != FALSE) {
    if (g_strcmp0(each, text) == 0) return true;
  }
  return false;
}

GVariant* argumentsFor(const Notification& notification, std::uint32_t replaced, bool markup) {
  const platform::GText escaped(g_markup_escape_text(notification.body.c_str(), -1));
  GVariantBuilder actions;
  g_variant_builder_init(&actions, G_VARIANT_TYPE_STRING_ARRAY);
  for (const char* word : {"default", "Velmora"}) g_variant_builder_add(&actions, "s", word);
  GVariantBuilder hints;
  g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&hints, "{sv}", "urgency", g_variant_new_byte(notification.urgency));
  g_variant_builder_add(&hints, "{sv}", "desktop-entry",
                        g_variant_new_string("com.brenvik.velmora"));
  return g_variant_new("(susssasa{sv}i)", "Velmora", replaced, "com.brenvik.velmora",
                       notification.title.c_str(),
                       markup ? escaped.get() : notification.body.c_str(), &actions, &hints,
                       asLongAsTheServiceLikes);
}

}  // namespace

struct Notifications::Posting {
  Notifications* owner;
  std::string id;
};

Notifications::Notifications(GDBusConnection* bus) : bus_(bus), cancellable_(g_cancellable_new()) {}

Notifications::~Notifications() {
  g_cancellable_cancel(cancellable_.get());
  posted_.clear();
  underWay_ = 0;
  rest();
}

void Notifications::call(const char* method, GVariant* arguments, GAsyncReadyCallback replied,
                         gpointer data) {
  g_dbus_connection_call(bus_, service, path, service, method, arguments, nullptr,
                         G_DBUS_CALL_FLAGS_NONE, deadline, cancellable_.get(), replied, data);
}

void Notifications::whenThere(std::function<void()> then) {
  if (bus_ == nullptr || then_) return;
  then_ = std::move(then);
  call("GetCapabilities", nullptr, capabilitiesCame, this);
}

void Notifications::capabilitiesCame(GObject* bus, GAsyncResult* result, gpointer notifications) {
  bool wasCancelled = false;
  const auto reply = replyOf(bus, result, wasCancelled);
  if (wasCancelled) return;
  auto* self = static_cast<Notifications*>(notifications);
  const auto then = std::exchange(self->then_, nullptr);
  if (!reply || g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(as)")) == FALSE) return;
  const platform::GValueTree list(g_variant_get_child_value(reply.get(), 0));
  self->takesMarkup_ = contains(list.get(), "body-markup");
  platform::guarded(then);
}

void Notifications::post(const Notification& notification) {
  if (bus_ == nullptr) return;
  listen();
  ++underWay_;
  const auto former = posted_.find(notification.id);
  const auto replaced = former == posted_.end() ? 0 : former->second;
  call("Notify", argumentsFor(notification, replaced, takesMarkup_), posted,
       std::make_unique<Posting>(Posting{this, notification.id}).release());
}

void Notifications::posted(GObject* bus, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Posting> posting(static_cast<Posting*>(data));
  bool wasCancelled = false;
  const auto reply = replyOf(bus, result, wasCancelled);
  if (wasCancelled) return;
  auto* self = posting->owner;
  --self->underWay_;
  if (reply && g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(u)")) != FALSE)
    g_variant_get(reply.get(), "(u)", &self->posted_[posting->id]);
  self->rest();
}

void Notifications::close(const std::string& id) {
  const auto found = posted_.find(id);
  if (found == posted_.end()) return;
  call("CloseNotification", g_variant_new("(u)", found->second), nullptr, nullptr);
  forget(found->second);
}

void Notifications::closeAll() {
  while (!posted_.empty()) close(posted_.begin()->first);
}

void Notifications::forget(std::uint32_t number) {
  tokens_.erase(number);
  std::erase_if(posted_, [number](const auto& entry) { return entry.second == number; });
  rest();
}

void Notifications::listen() {
  if (signals_ != 0) return;
  signals_ = g_dbus_connection_signal_subscribe(bus_, service, service, nullptr, path, nullptr,
                                                G_DBUS_SIGNAL_FLAGS_NONE, signalled, this, nullptr);
  owners_ = g_dbus_connection_signal_subscribe(bus_, "org.freedesktop.DBus", "org.freedesktop.DBus",
                                               "NameOwnerChanged", nullptr, service,
                                               G_DBUS_SIGNAL_FLAGS_NONE, signalled, this, nullptr);
}

/// Listens no longer once nothing of ours is there.
void Notifications::rest() {
  if (signals_ == 0 || !posted_.empty() || underWay_ > 0) return;
  g_dbus_connection_signal_unsubscribe(bus_, std::exchange(signals_, 0));
  g_dbus_connection_signal_unsubscribe(bus_, std::exchange(owners_, 0));
  tokens_.clear();
}

void Notifications::signalled(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                              const gchar* signal, GVariant* arguments, gpointer notifications) {
  platform::guarded([&] { static_cast<Notifications*>(notifications)->called(signal, arguments); });
}

void Notifications::called(const std::string& signal, GVariant* arguments) {
  if (signal == "NameOwnerChanged") {  // another service, with numbers of its own
    posted_.clear();
    return rest();
  }
  std::uint32_t number = 0;
  if (g_variant_n_children(arguments) == 0) return;
  const platform::GValueTree first(g_variant_get_child_value(arguments, 0));
  if (g_variant_is_of_type(first.get(), G_VARIANT_TYPE_UINT32) == FALSE) return;
  number = g_variant_get_uint32(first.get());
  const bool isOurs = std::any_of(posted_.begin(), posted_.end(),
                                  [number](const auto& entry) { return entry.second == number; });
  if (!isOurs) return;
  if (signal == "ActivationToken" && g_variant_is_of_type(arguments, G_VARIANT_TYPE("(us)"))) {
    const char* token = nullptr;
    g_variant_get(arguments, "(u&s)", nullptr, &token);
    tokens_[number] = token;
  } else if (signal == "ActionInvoked") {
    openCompanion(tokens_[number]);
    forget(number);
  } else if (signal == "NotificationClosed") {
    forget(number);
  }
}

}  // namespace desktop
