#include "companion/redirect_listener.hpp"

#include <libsoup/soup.h>

#include <vector>

#include "companion/connection_gate.hpp"
#include "companion/end_page.hpp"
#include "companion/loopback_peer.hpp"

namespace companion {

namespace {

using platform::Reference;
using Uri = platform::Owned<GUri, g_uri_unref>;

constexpr unsigned longestDelivery = 2'000;  // milliseconds

constexpr const char* pageType = "text/html; charset=utf-8";
constexpr std::pair<const char*, const char*> pageHeaders[] = {
    {"Cache-Control", "no-store"},
    {"Referrer-Policy", "no-referrer"},
    {"X-Content-Type-Options", "nosniff"},
    {"Content-Security-Policy",
     "default-src 'none'; style-src 'unsafe-inline'; img-src data:; frame-ancestors 'none'"},
    {"Allow", "GET"},
    {"Connection", "close"}};

void respond(SoupServerMessage* message, unsigned status, const std::string& page) {
  SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
  for (const auto& [name, value] : pageHeaders) soup_message_headers_replace(headers, name, value);
  soup_server_message_set_status(message, status, nullptr);
  soup_server_message_set_response(message, pageType, SOUP_MEMORY_COPY, page.data(), page.size());
}

bool hasBody(SoupServerMessage* message) {
  SoupMessageHeaders* headers = soup_server_message_get_request_headers(message);
  return soup_message_headers_get_encoding(headers) != SOUP_ENCODING_CONTENT_LENGTH
             ? soup_message_headers_get_encoding(headers) != SOUP_ENCODING_NONE
             : soup_message_headers_get_content_length(headers) > 0;
}

/// The whole answer, for a connection that the server library still reads from.
std::string written(unsigned status, const std::string& page) {
  auto text = "HTTP/1.1 " + std::to_string(status) + " " + soup_status_get_phrase(status) + "\r\n";
  for (const auto& [name, value] : pageHeaders) text += std::string(name) + ": " + value + "\r\n";
  return text + "Content-Type: " + pageType + "\r\nContent-Length: " + std::to_string(page.size()) +
         "\r\n\r\n" + page;
}

/// Answers before the body, which the server library would read first. What still comes is thrown
/// away for a moment, since a connection that is closed over it would take the answer along.
void refuseBody(SoupServerMessage* message, unsigned status, GSocket* connection) {
  soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
  soup_server_message_set_status(message, status, nullptr);
  const auto text = written(status, strangerPage());
  g_socket_send(connection, text.data(), text.size(), nullptr, nullptr);
  g_socket_shutdown(connection, FALSE, TRUE, nullptr);
  const auto end = [](gpointer socket) {
    ConnectionGate::end(G_SOCKET(socket));
    return gboolean{G_SOURCE_REMOVE};
  };
  g_timeout_add_full(G_PRIORITY_DEFAULT, longestDelivery, end, g_object_ref(connection),
                     g_object_unref);
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
  Server(const RedirectAddress& address, Judge belongsHere)
      : path_(asServed(address.path)),
        belongsHere_(std::move(belongsHere)),
        server_(soup_server_new("server-header", "", nullptr)),
        gate_(listenOnLoopback(address.port, address.isNamed), [this](auto* connection, auto* here,
                                                                      auto* there) {
          soup_server_accept_iostream(server_.get(), G_IO_STREAM(connection), here, there, nullptr);
        }) {
    soup_server_add_early_handler(server_.get(), nullptr, readHead, this, nullptr);
    soup_server_add_handler(server_.get(), nullptr, handle, this, nullptr);
  }

  ~Server() {
    if (delivery_ != 0) g_source_remove(delivery_);
    for (const auto& message : waiting_) g_signal_handlers_disconnect_by_data(message.get(), this);
    soup_server_disconnect(server_.get());
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  [[nodiscard]] int port() const { return gate_.port(); }

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
  static void readHead(SoupServer*, SoupServerMessage* message, const char*, GHashTable*,
                       gpointer server) {
    static_cast<Server*>(server)->readHead(message);
  }
  static void handle(SoupServer*, SoupServerMessage* message, const char*, GHashTable*,
                     gpointer server) {
    static_cast<Server*>(server)->handle(message);
  }

  /// What is wrong with a request, whatever its query says; SOUP_STATUS_NONE without anything.
  [[nodiscard]] unsigned problemOf(SoupServerMessage* message, GSocket* connection) const {
    if (textOf(soup_server_message_get_method(message)) != "GET")
      return SOUP_STATUS_METHOD_NOT_ALLOWED;
    if (textOf(g_uri_get_path(soup_server_message_get_uri(message))) != path_)
      return SOUP_STATUS_NOT_FOUND;
    if (hasBody(message)) return SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE;
    // Another user may have read the address from the browser's command line.
    if (connection == nullptr || peerOf(connection) == Peer::otherUser)
      return SOUP_STATUS_FORBIDDEN;
    return SOUP_STATUS_NONE;
  }

  void readHead(SoupServerMessage* message) {
    GSocket* connection = gate_.find(soup_server_message_get_remote_address(message));
    const auto problem = problemOf(message, connection);
    if (problem == SOUP_STATUS_NONE) return;
    if (connection != nullptr && hasBody(message))
      refuseBody(message, problem, connection);
    else
      respond(message, problem, strangerPage());
  }

  /// A request with nothing wrong but perhaps its query.
  void handle(SoupServerMessage* message) {
    if (!belongsHere_(textOf(g_uri_get_query(soup_server_message_get_uri(message))))) {
      respond(message, SOUP_STATUS_BAD_REQUEST, strangerPage());
    } else if (!page_.empty()) {
      respond(message, SOUP_STATUS_OK, page_);
    } else {
      gate_.keep(soup_server_message_get_remote_address(message));
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
  Reference<SoupServer> server_;
  ConnectionGate gate_;
  std::vector<Reference<SoupServerMessage>> waiting_;
  std::string page_;
  std::function<void()> sent_;
  unsigned delivery_ = 0;  // source that ends the wait for the browser
};

RedirectListener::RedirectListener(const RedirectAddress& address, Judge belongsHere)
    : server_(std::make_unique<Server>(address, std::move(belongsHere))) {}

RedirectListener::~RedirectListener() = default;

int RedirectListener::port() const { return server_->port(); }

void RedirectListener::answer(const std::string& page, std::function<void()> sent) {
  server_->answer(page, std::move(sent));
}

}  // namespace companion
