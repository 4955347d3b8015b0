#include "companion/redirect_listener.hpp"

#include <libsoup/soup.h>
#include <sys/resource.h>

#include <vector>

#include "companion/end_page.hpp"
#include "companion/sign_in_error.hpp"
#include "platform/foundation/raii.hpp"

namespace companion {

namespace {

template <class T>
using Object = platform::Owned<T, g_object_unref>;
using Error = platform::Owned<GError, g_error_free>;
using Uri = platform::Owned<GUri, g_uri_unref>;
using Uris = platform::Owned<GSList, +[](GSList* list) {
  g_slist_free_full(list, reinterpret_cast<GDestroyNotify>(g_uri_unref));
}>;

constexpr unsigned longestDelivery = 2'000;  // milliseconds

void respond(SoupServerMessage* message, unsigned status, const std::string& page) {
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
  const std::pair<const char*, const char*> fields[] = {
      {"Cache-Control", "no-store"},
      {"Referrer-Policy", "no-referrer"},
      {"X-Content-Type-Options", "nosniff"},
      {"Content-Security-Policy",
       "default-src 'none'; style-src 'unsafe-inline'; img-src data:; frame-ancestors 'none'"},
      {"Connection", "close"}};
  for (const auto& [name, value] : fields) soup_message_headers_replace(headers, name, value);
  if (status == SOUP_STATUS_METHOD_NOT_ALLOWED)
    soup_message_headers_replace(headers, "Allow", "GET");
  soup_server_message_set_status(message, status, nullptr);
  soup_server_message_set_response(message, "text/html; charset=utf-8", SOUP_MEMORY_COPY,
                                   page.data(), page.size());
}

/// Idle connections must not use the descriptors up: without one, the listener would go deaf.
void raiseDescriptorLimit() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

std::string textOf(const char* part) { return part == nullptr ? "" : part; }

/// A path as the server library hands it out: decoded, without dot segments.
std::string asServed(const std::string& path) {
  const Uri uri(
      g_uri_parse(("http://localhost" + path).c_str(), G_URI_FLAGS_SCHEME_NORMALIZE, nullptr));
  return uri ? g_uri_get_path(uri.get()) : path;
}

}  // namespace

class RedirectListener::Server {
 public:
  Server(int port, const std::string& path, Judge belongsHere)
      : path_(asServed(path)),
        belongsHere_(std::move(belongsHere)),
        server_(soup_server_new("server-header", "", nullptr)) {
    raiseDescriptorLimit();
    const Object<GInetAddress> loopback(g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4));
    const Object<GSocketAddress> address(
        g_inet_socket_address_new(loopback.get(), static_cast<guint16>(port)));
    GError* failure = nullptr;
    const bool listens = soup_server_listen(server_.get(), address.get(),
                                            static_cast<SoupServerListenOptions>(0), &failure);
    const Error error(failure);
    if (!listens) throw SignInError(SignInError::Case::portTaken, std::to_string(port));
    soup_server_add_handler(server_.get(), nullptr, handle, this, nullptr);
  }

  ~Server() {
    if (delivery_ != 0) g_source_remove(delivery_);
    for (const auto& message : waiting_) g_signal_handlers_disconnect_by_data(message.get(), this);
    soup_server_disconnect(server_.get());
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  [[nodiscard]] int port() const {
    const Uris uris(soup_server_get_uris(server_.get()));
    return uris ? g_uri_get_port(static_cast<GUri*>(uris->data)) : 0;
  }

  void answer(const std::string& page, std::function<void()> sent) {
    page_ = page;
    sent_ = std::move(sent);
    for (const auto& message : waiting_) {
      respond(message.get(), SOUP_STATUS_OK, page_);
      soup_server_message_unpause(message.get());
    }
    const unsigned delay = waiting_.empty() ? 0 : longestDelivery;
    delivery_ = g_timeout_add(delay, delivered, this);
  }

 private:
  static void handle(SoupServer*, SoupServerMessage* message, const char*, GHashTable*,
                     gpointer server) {
    static_cast<Server*>(server)->handle(message);
  }

  void handle(SoupServerMessage* message) {
    GUri* uri = soup_server_message_get_uri(message);
    if (textOf(soup_server_message_get_method(message)) != "GET") {
      respond(message, SOUP_STATUS_METHOD_NOT_ALLOWED, strangerPage());
    } else if (textOf(g_uri_get_path(uri)) != path_) {
      respond(message, SOUP_STATUS_NOT_FOUND, strangerPage());
    } else if (!belongsHere_(textOf(g_uri_get_query(uri)))) {
      respond(message, SOUP_STATUS_BAD_REQUEST, strangerPage());
    } else if (!page_.empty()) {
      respond(message, SOUP_STATUS_OK, page_);
    } else {
      waiting_.emplace_back(static_cast<SoupServerMessage*>(g_object_ref(message)));
      g_signal_connect(message, "finished", G_CALLBACK(finished), this);
      soup_server_message_pause(message);
    }
  }

  /// The page has arrived, or the browser has gone.
  static void finished(SoupServerMessage* message, gpointer server) {
    auto* self = static_cast<Server*>(server);
    g_signal_handlers_disconnect_by_data(message, self);
    std::erase_if(self->waiting_, [message](const auto& held) { return held.get() == message; });
    if (!self->waiting_.empty() || self->delivery_ == 0) return;
    g_source_remove(self->delivery_);
    self->delivery_ = g_idle_add(delivered, self);
  }

  static gboolean delivered(gpointer server) {
    auto* self = static_cast<Server*>(server);
    self->delivery_ = 0;
    if (const auto sent = std::exchange(self->sent_, nullptr)) sent();
    return G_SOURCE_REMOVE;
  }

  std::string path_;
  Judge belongsHere_;
  Object<SoupServer> server_;
  std::vector<Object<SoupServerMessage>> waiting_;
  std::string page_;
  std::function<void()> sent_;
  unsigned delivery_ = 0;  // source that ends the wait for the browser
};

RedirectListener::RedirectListener(int port, std::string path, Judge belongsHere)
    : server_(std::make_unique<Server>(port, std::move(path), std::move(belongsHere))) {}

RedirectListener::~RedirectListener() = default;

int RedirectListener::port() const { return server_->port(); }

void RedirectListener::answer(const std::string& page, std::function<void()> sent) {
  server_->answer(page, std::move(sent));
}

}  // namespace companion
