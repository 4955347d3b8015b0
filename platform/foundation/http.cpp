#include "platform/foundation/http.hpp"

#include <curl/curl.h>

#include <mutex>

#include "platform/foundation/raii.hpp"
#include "platform/foundation/url.hpp"

namespace platform {

namespace {

constexpr int mostRedirects = 20;

using EasyHandle = Owned<CURL, curl_easy_cleanup>;
using HeaderList = Owned<curl_slist, curl_slist_free_all>;

/// Idle handles, each with the connections it keeps. A request takes one and gives it back, so
/// requests one after another share connections, and requests at once never share a handle.
class SharedSession {
 public:
  static SharedSession& instance() {
    // Never destroyed: a background task may still be sending while the process exits.
    static auto* const session = new SharedSession;
    return *session;
  }

  EasyHandle take() {
    const std::lock_guard lock(mutex_);
    if (idle_.empty()) return EasyHandle(curl_easy_init());
    auto handle = std::move(idle_.back());
    idle_.pop_back();
    return handle;
  }

  void giveBack(EasyHandle handle) {
    const std::lock_guard lock(mutex_);
    idle_.push_back(std::move(handle));
  }

 private:
  SharedSession() { curl_global_init(CURL_GLOBAL_DEFAULT); }

  std::mutex mutex_;
  std::vector<EasyHandle> idle_;
};

/// What has arrived of an answer; the headers count towards its size.
struct Answer {
  std::size_t largest = 0;
  std::string body;
  std::size_t headerBytes = 0;
};

std::size_t receiveBody(char* data, std::size_t, std::size_t count, void* answer) {
  auto& received = *static_cast<Answer*>(answer);
  if (received.body.size() + count > received.largest) return 0;
  received.body.append(data, count);
  return count;
}

std::size_t receiveHeader(char*, std::size_t, std::size_t count, void* answer) {
  auto& received = *static_cast<Answer*>(answer);
  received.headerBytes += count;
  return received.headerBytes > received.largest ? 0 : count;
}

HeaderList headerList(const std::vector<HttpHeader>& headers) {
  HeaderList list;
  const auto append = [&list](const std::string& line) {
    list.reset(curl_slist_append(list.release(), line.c_str()));
  };
  for (const auto& header : headers) {
    constexpr std::string_view lineBreaks("\r\n\0", 3);
    if (header.value.find_first_of(lineBreaks) != std::string::npos)
      throw TransportError("A header value holds a line break.");
    // libcurl drops a header with nothing behind the colon, and sends it empty with a semicolon.
    append(header.value.empty() ? header.name + ";" : header.name + ": " + header.value);
  }
  append("Accept:");  // what libcurl would add by itself
  append("Expect:");
  return list;
}

struct Exchange {
  HttpResponse response;
  std::optional<std::string> redirect;
};

TransportError::Case caseOf(CURL* handle, CURLcode code) {
  using Case = TransportError::Case;
  // Kept connections count as connected, too; their time to connect is 0.
  double connected = 0;
  double ready = 0;
  curl_easy_getinfo(handle, CURLINFO_CONNECT_TIME, &connected);
  curl_easy_getinfo(handle, CURLINFO_PRETRANSFER_TIME, &ready);
  switch (code) {
    case CURLE_PEER_FAILED_VERIFICATION:
      return Case::ledAway;
    case CURLE_OPERATION_TIMEDOUT:
      return connected > 0 || ready > 0 ? Case::noAnswer : Case::noNetwork;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_CONNECT:
      return Case::noNetwork;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
      return Case::noAnswer;
    default:
      return Case::notPossible;
  }
}

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// One request and its answer, without following anything.
Exchange exchange(CURL* handle, const HttpRequest& request, const Origin& origin,
                  std::chrono::milliseconds timeLeft) {
  Answer answer{request.largestAnswer};
  const auto headers = headerList(request.headers);
  curl_easy_reset(handle);
  curl_easy_setopt(handle, CURLOPT_URL, request.url.c_str());
  curl_easy_setopt(handle, CURLOPT_PATH_AS_IS, 1L);
  curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers.get());
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  // A name server that does not answer must not prolong the time.
  curl_easy_setopt(handle, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(timeLeft.count()));
  curl_easy_setopt(handle, CURLOPT_MAXFILESIZE_LARGE,
                   static_cast<curl_off_t>(request.largestAnswer));
  curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, receiveBody);
  curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer);
  curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, receiveHeader);
  curl_easy_setopt(handle, CURLOPT_HEADERDATA, &answer);
  // A CA path beside the CA file would make every new connection parse the file again.
  curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);
  if (isLoopback(origin)) curl_easy_setopt(handle, CURLOPT_PROXY, "");
  if (request.body) {
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request.body->size()));
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body->data());
  }

  const CURLcode code = curl_easy_perform(handle);
  if (code == CURLE_WRITE_ERROR || code == CURLE_FILESIZE_EXCEEDED)
    throw TransportError("The answer of " + origin.host + " is larger than " +
                         std::to_string(request.largestAnswer >> 20U) + " MiB.");
  if (code != CURLE_OK)
    throw TransportError("No answer from " + origin.host + ": " + curl_easy_strerror(code) + ".",
                         caseOf(handle, code));

  long status = 0;
  curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
  char* redirect = nullptr;
  curl_easy_getinfo(handle, CURLINFO_REDIRECT_URL, &redirect);
  Exchange result{{static_cast<int>(status), std::move(answer.body)}, std::nullopt};
  if (redirect != nullptr && isRedirect(result.response.status)) result.redirect = redirect;
  return result;
}

/// The request that a redirect asks for.
HttpRequest redirected(HttpRequest request, const Origin& from, const std::string& target,
                       int status) {
  const auto to = originOf(target);
  const bool keepsMethod = status == 307 || status == 308;
  if (request.body && !keepsMethod) {
    request.body.reset();
    request.headers.clear();  // they described the body
  }
  if (to != from) {
    if (request.body)
      throw TransportError("A redirect would carry the request to another host.",
                           TransportError::Case::ledAway);
    request.headers.clear();
  }
  request.url = target;
  return request;
}

HttpResponse follow(CURL* handle, HttpRequest& request) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + request.timeout;
  for (int redirects = 0; redirects <= mostRedirects; ++redirects) {
    const auto origin = originOf(request.url);
    if (!origin) throw TransportError("The request's address is not valid.");
    if (!isAllowed(*origin))
      throw TransportError("Plain http is allowed to this machine only, not to " + origin->host +
                           ".");
    const auto timeLeft =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (timeLeft.count() <= 0)
      throw TransportError("No answer from " + origin->host + " in time.",
                           TransportError::Case::noAnswer);
    auto [response, redirect] = exchange(handle, request, *origin, timeLeft);
    if (!redirect || !request.followsRedirects) return response;
    request = redirected(std::move(request), *origin, *redirect, response.status);
  }
  throw TransportError("Too many redirects.");
}

/// Whoever redirects to elsewhere is not who was asked: what fails from there on is theirs.
HttpResponse exchangeAll(CURL* handle, HttpRequest request) {
  const auto home = originOf(request.url);
  try {
    return follow(handle, request);
  } catch (TransportError& error) {
    if (originOf(request.url) != home) error.kind = TransportError::Case::ledAway;
    throw;
  }
}

}  // namespace

HttpResponse sendRequest(const HttpRequest& request) {
  auto& session = SharedSession::instance();
  auto handle = session.take();
  if (!handle) throw TransportError("The HTTP library could not be started.");
  try {
    auto response = exchangeAll(handle.get(), request);
    session.giveBack(std::move(handle));
    return response;
  } catch (...) {
    session.giveBack(std::move(handle));
    throw;
  }
}

}  // namespace platform
