#include "platform/net/HTTPExchange.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <array>

#include "platform/base/GObjectPtr.h"
#include "platform/base/Text.h"
#include "platform/net/HTTPSession.h"

namespace valdren::platform {
namespace {

// Below the priority of drawing, so that a fast server cannot delay it.
constexpr int kReadPriority = G_PRIORITY_HIGH_IDLE + 30;
constexpr std::size_t kPiece = 32 * 1024;
// Bounds for reading an unwanted body to its end, which keeps its connection usable.
constexpr gssize kLongestDrain = 64 * 1024;
constexpr guint kDrainMilliseconds = 1000;

struct GUriUnref {
  void operator()(GUri* uri) const { g_uri_unref(uri); }
};
using GUriPtr = std::unique_ptr<GUri, GUriUnref>;

GUriPtr parsed(const URL& url) {
  return GUriPtr(
      g_uri_parse(url.absoluteString().c_str(), GUriFlags(SOUP_HTTP_URI_FLAGS), nullptr));
}

bool canFetchURI(GUri* uri) {
  const char* const scheme = g_uri_get_scheme(uri);
  const char* const host = g_uri_get_host(uri);
  return host && *host && (g_str_equal(scheme, "http") || g_str_equal(scheme, "https"));
}

bool isHeaderName(std::string_view name) {
  constexpr std::string_view kSeparators = "()<>@,;:\\\"/[]?={}";
  return !name.empty() && std::all_of(name.begin(), name.end(), [&](char character) {
    return g_ascii_isgraph(character) && kSeparators.find(character) == std::string_view::npos;
  });
}

/// A control character would end the header and could start another one.
bool isHeaderValue(std::string_view value) {
  return std::none_of(value.begin(), value.end(), [](char character) {
    return character != '\t' && g_ascii_iscntrl(character);
  });
}

GObjectPtr<SoupMessage> messageFor(const URLRequest& request) {
  const GUriPtr uri = parsed(request.url);
  if (!uri || !canFetchURI(uri.get())) return nullptr;
  GObjectPtr<SoupMessage> message(soup_message_new_from_uri("GET", uri.get()));
  soup_message_set_flags(message.get(), SOUP_MESSAGE_NO_REDIRECT);
  soup_message_set_first_party(message.get(), uri.get());
  soup_message_set_site_for_cookies(message.get(), uri.get());
  soup_message_set_is_top_level_navigation(message.get(), TRUE);
  if (!request.handlesCookies) soup_message_disable_feature(message.get(), SOUP_TYPE_COOKIE_JAR);
  SoupMessageHeaders* const headers = soup_message_get_request_headers(message.get());
  for (const auto& [name, value] : request.headers) {
    if (isHeaderName(name) && isHeaderValue(value)) {
      soup_message_headers_replace(headers, name.c_str(), value.c_str());
    }
  }
  return message;
}

HTTPResponseHead headOf(SoupMessage* message) {
  HTTPResponseHead head;
  head.statusCode = static_cast<int>(soup_message_get_status(message));
  SoupMessageHeadersIter iterator;
  soup_message_headers_iter_init(&iterator, soup_message_get_response_headers(message));
  const char* name = nullptr;
  const char* value = nullptr;
  while (soup_message_headers_iter_next(&iterator, &name, &value)) {
    const std::string_view bytes(value);
    head.headerSize += std::string_view(name).size() + bytes.size();
    if (head.location.empty() && g_ascii_strcasecmp(name, "Location") == 0) head.location = bytes;
    const auto [header, isFirst] = head.headers.try_emplace(repairedUTF8(name));
    if (!isFirst) header->second += ", ";
    header->second += repairedUTF8(bytes);
  }
  return head;
}

int codeFor(const GError& error) {
  if (error.domain == G_RESOLVER_ERROR) return kURLErrorCannotFindHost;
  if (error.domain == G_TLS_ERROR) return kURLErrorSecureConnectionFailed;
  if (error.domain == SOUP_SESSION_ERROR) return kURLErrorBadServerResponse;
  if (error.domain != G_IO_ERROR) return kURLErrorUnknown;
  switch (error.code) {
    case G_IO_ERROR_TIMED_OUT: return kURLErrorTimedOut;
    case G_IO_ERROR_HOST_NOT_FOUND: return kURLErrorCannotFindHost;
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_HOST_UNREACHABLE:
    case G_IO_ERROR_NETWORK_UNREACHABLE: return kURLErrorCannotConnectToHost;
    case G_IO_ERROR_INVALID_DATA: return kURLErrorBadServerResponse;
    default: return kURLErrorNetworkConnectionLost;
  }
}

Error errorFrom(const GError& error) {
  return {kURLErrorDomain, codeFor(error), repairedUTF8(error.message)};
}

}  // namespace

/// The state that libsoup's callbacks share. It outlives the exchange.
struct HTTPExchange::Operation : std::enable_shared_from_this<Operation> {
  Client* client = nullptr;  // null once the exchange is gone
  GObjectPtr<SoupMessage> message;
  GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
  GObjectPtr<GInputStream> body;
  std::array<char, kPiece> piece;
  gssize drainLeft = kLongestDrain;
  guint drainTimer = 0;
  int interimLeft = 20;
  bool isSending = false;
  bool isReading = false;

  ~Operation() {
    g_signal_handlers_disconnect_by_data(message.get(), this);
    if (drainTimer) g_source_remove(drainTimer);
  }

  /// Hands a reference to a callback, which takes it back.
  gpointer handOver() { return new std::shared_ptr<Operation>(shared_from_this()); }
  static std::shared_ptr<Operation> takeBack(gpointer handed) {
    const std::unique_ptr<std::shared_ptr<Operation>> owner(
        static_cast<std::shared_ptr<Operation>*>(handed));
    return *owner;
  }

  void send() {
    isSending = true;
    g_signal_connect(message.get(), "got-informational", G_CALLBACK(interimReceived), this);
    soup_session_send_async(sharedHTTPSession(), message.get(), G_PRIORITY_DEFAULT,
                            cancellable.get(), sent, handOver());
  }

  void read() {
    isReading = true;
    g_input_stream_read_async(body.get(), piece.data(), piece.size(), kReadPriority,
                              cancellable.get(), pieceRead, handOver());
  }

  void fail(const GError& error) {
    if (client) client->exchangeDidFail(errorFrom(error));
  }

  /// Stops without calling the client again.
  void abandon() {
    client = nullptr;
    if (isSending) return g_cancellable_cancel(cancellable.get());
    if (!body) return;
    if (isReading) return g_cancellable_cancel(cancellable.get());
    drain();
  }

  /// Reads the part of the body that has arrived, so that the next request can reuse the
  /// connection. The rest has `kDrainMilliseconds` to arrive.
  void drain() {
    while (drainLeft > 0) {
      const gssize size = G_IS_POLLABLE_INPUT_STREAM(body.get())
                              ? g_pollable_input_stream_read_nonblocking(
                                    G_POLLABLE_INPUT_STREAM(body.get()), piece.data(), piece.size(),
                                    cancellable.get(), nullptr)
                              : -1;
      if (size == 0) return;
      if (size < 0) break;
      drainLeft -= size;
    }
    if (drainLeft <= 0) return g_cancellable_cancel(cancellable.get());
    drainTimer = g_timeout_add(kDrainMilliseconds, drainedLongEnough, this);
    read();
  }

  static gboolean drainedLongEnough(gpointer self) {
    auto& operation = *static_cast<Operation*>(self);
    operation.drainTimer = 0;
    g_cancellable_cancel(operation.cancellable.get());
    return G_SOURCE_REMOVE;
  }

  /// Limits informational (1xx) responses, which a server could send without end.
  static void interimReceived(SoupMessage*, gpointer self) {
    auto& operation = *static_cast<Operation*>(self);
    if (--operation.interimLeft < 0) g_cancellable_cancel(operation.cancellable.get());
  }

  static void sent(GObject* session, GAsyncResult* result, gpointer handed) {
    const auto operation = takeBack(handed);
    operation->isSending = false;
    GError* error = nullptr;
    operation->body.reset(soup_session_send_finish(SOUP_SESSION(session), result, &error));
    const GErrorPtr ownedError(error);
    if (!operation->client) return;
    if (error) return operation->fail(*error);
    operation->client->exchangeDidReceiveHead(headOf(operation->message.get()));
  }

  static void pieceRead(GObject* stream, GAsyncResult* result, gpointer handed) {
    const auto operation = takeBack(handed);
    operation->isReading = false;
    GError* error = nullptr;
    const gssize size = g_input_stream_read_finish(G_INPUT_STREAM(stream), result, &error);
    const GErrorPtr ownedError(error);
    if (!operation->client) return operation->pieceDrained(size);
    if (size < 0) return operation->fail(*error);
    if (size == 0) return operation->client->exchangeDidEnd();
    operation->client->exchangeDidReceiveBody(
        {operation->piece.data(), static_cast<std::size_t>(size)});
    if (operation->client) operation->read();
  }

  void pieceDrained(gssize size) {
    if (size <= 0) return;
    drainLeft -= size;
    if (drainLeft > 0) read();
  }
};

std::unique_ptr<HTTPExchange> HTTPExchange::make(Client& client, const URLRequest& request) {
  auto message = messageFor(request);
  if (!message) return nullptr;
  auto operation = std::make_shared<Operation>();
  operation->client = &client;
  operation->message = std::move(message);
  return std::unique_ptr<HTTPExchange>(new HTTPExchange(std::move(operation)));
}

HTTPExchange::HTTPExchange(std::shared_ptr<Operation> operation)
    : operation_(std::move(operation)) {}

HTTPExchange::~HTTPExchange() {
  operation_->abandon();
}

void HTTPExchange::send() {
  operation_->send();
}

void HTTPExchange::readBody() {
  operation_->read();
}

}  // namespace valdren::platform
