#pragma once

#include <functional>
#include <memory>
#include <string>

#include "companion/redirect_address.hpp"

namespace companion {

/// Listens on this machine alone for the browser that comes back from the provider (RFC 8252,
/// section 7.3), in the default main context. The browser that brings the answer is kept waiting
/// until `answer`; every other request, and every other user's, gets an error page and changes
/// nothing. A request is judged by its head; a body is never kept.
class RedirectListener {
 public:
  /// Whether the query of a GET for the path belongs to this sign-in; called on the main loop.
  using Judge = std::function<bool(const std::string& query)>;

  /// Throws SignInError as listenOnLoopback does.
  RedirectListener(const RedirectAddress& address, Judge belongsHere);
  ~RedirectListener();
  RedirectListener(const RedirectListener&) = delete;
  RedirectListener& operator=(const RedirectListener&) = delete;

  [[nodiscard]] int port() const;
  /// Sends the page to the browser that waits and to those that ask again. `sent` is called when
  /// it has arrived, or after a moment.
  void answer(const std::string& page, std::function<void()> sent);

 private:
  class Server;
  std::unique_ptr<Server> server_;
};

}  // namespace companion
