#include "sandbox/HttpServer.h"

#include <libsoup/soup.h>

#include <chrono>
#include <map>

#include "platform/base/GObjectPtr.h"
#include "sandbox/Certificate.h"
#include "sandbox/Delivery.h"

namespace platform = valdren::platform;

namespace sandbox {
namespace {

/// Further requests are answered with status 503.
constexpr std::size_t kMostDeliveries = 256;
constexpr int kLastTurns = 1000;

/// The server itself, used on its thread only.
class Service {
 public:
  explicit Service(Handler handler)
      : handler_(std::move(handler)),
        server_(soup_server_new("server-header", "sandbox ", nullptr)) {
    g_signal_connect(server_.get(), "request-started", G_CALLBACK(onStarted), nullptr);
    soup_server_add_handler(server_.get(), nullptr, onRequest, this, nullptr);
  }
  ~Service() {
    for (const auto& [message, delivery] : deliveries_) {
      g_signal_handlers_disconnect_by_data(message, this);
    }
    deliveries_.clear();
    soup_server_disconnect(server_.get());
  }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  /// The port, or 0 with the reason in `failure`.
  std::uint16_t listen(std::uint16_t port, bool secure, std::string& failure) {
    GError* error = nullptr;
    const int options = SOUP_SERVER_LISTEN_IPV4_ONLY | (secure ? SOUP_SERVER_LISTEN_HTTPS : 0);
    if (!soup_server_listen_local(server_.get(), port, SoupServerListenOptions(options), &error)) {
      failure = error ? error->message : "unknown reason";
      g_clear_error(&error);
      return 0;
    }
    GSList* uris = soup_server_get_uris(server_.get());
    std::uint16_t found = 0;
    for (GSList* each = uris; each; each = each->next) {
      GUri* uri = static_cast<GUri*>(each->data);
      const bool isSecure = g_strcmp0(g_uri_get_scheme(uri), "https") == 0;
      if (isSecure == secure) found = static_cast<std::uint16_t>(g_uri_get_port(uri));
    }
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    if (!found) failure = "the server reports no port";
    return found;
  }

  std::uint16_t listenSecurely() {
    const platform::GObjectPtr<GTlsCertificate> certificate = selfSignedCertificate();
    if (!certificate) return 0;
    soup_server_set_tls_certificate(server_.get(), certificate.get());
    std::string failure;
    return listen(0, true, failure);
  }

 private:
  static void onStarted(SoupServer*, SoupServerMessage* message, gpointer) {
    // Request bodies are not used and must not take memory.
    soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
  }

  static void onRequest(SoupServer*, SoupServerMessage* message, const char*, GHashTable*,
                        gpointer data) {
    static_cast<Service*>(data)->answer(message);
  }

  static void onFinished(SoupServerMessage* message, gpointer data) {
    static_cast<Service*>(data)->deliveries_.erase(message);
  }

  static Request requestFrom(SoupServerMessage* message) {
    Request request;
    GUri* uri = soup_server_message_get_uri(message);
    request.method = soup_server_message_get_method(message);
    request.path = g_uri_get_path(uri);
    if (const char* query = g_uri_get_query(uri)) request.query = query;
    request.secure = g_strcmp0(g_uri_get_scheme(uri), "https") == 0;
    SoupMessageHeadersIter iterator;
    soup_message_headers_iter_init(&iterator, soup_server_message_get_request_headers(message));
    const char* name = nullptr;
    const char* value = nullptr;
    while (soup_message_headers_iter_next(&iterator, &name, &value)) {
      request.headers.emplace_back(name, value);
    }
    return request;
  }

  void answer(SoupServerMessage* message) {
    const bool full = deliveries_.size() >= kMostDeliveries;
    auto delivery = std::make_unique<Delivery>(
        message, full ? Answer{.status = 503} : handler_(requestFrom(message)));
    Delivery& kept = *(deliveries_[message] = std::move(delivery));
    g_signal_connect(message, "finished", G_CALLBACK(onFinished), this);
    kept.start();
  }

  Handler handler_;
  std::map<SoupServerMessage*, std::unique_ptr<Delivery>> deliveries_;
  platform::GObjectPtr<SoupServer> server_;
};

gboolean quit(gpointer loop) {
  g_main_loop_quit(static_cast<GMainLoop*>(loop));
  return G_SOURCE_REMOVE;
}

}  // namespace

std::unique_ptr<HttpServer> HttpServer::start(std::uint16_t port, Handler handler,
                                              Listening listening, std::string& failure) {
  std::unique_ptr<HttpServer> server(new HttpServer);
  server->thread_ =
      std::thread(&HttpServer::run, server.get(), port, std::move(handler), std::move(listening));
  std::unique_lock lock(server->mutex_);
  server->changed_.wait(lock, [&] { return server->ready_; });
  failure = server->failure_;
  lock.unlock();
  return failure.empty() ? std::move(server) : nullptr;
}

HttpServer::~HttpServer() {
  if (loop_) {
    // g_main_loop_quit has no effect on a loop that does not run yet, so this attaches a source.
    const platform::GSourcePtr source(g_idle_source_new());
    // This must run before answers that never end.
    g_source_set_priority(source.get(), G_PRIORITY_HIGH);
    g_source_set_callback(source.get(), quit, loop_, nullptr);
    g_source_attach(source.get(), context_);
    thread_.join();
  } else {
    thread_.join();
  }
  if (loop_) g_main_loop_unref(loop_);
  if (context_) g_main_context_unref(context_);
}

std::uint16_t HttpServer::securePort(platform::Seconds longest) const {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, longest, [this] { return securePort_.has_value(); });
  return securePort_.value_or(0);
}

void HttpServer::run(std::uint16_t port, const Handler& handler, const Listening& listening) {
  GMainContext* context = g_main_context_new();
  g_main_context_push_thread_default(context);
  {
    Service service(handler);
    std::string failure;
    const std::uint16_t found = service.listen(port, false, failure);
    // Requests wait until the loop runs.
    if (found) {
      context_ = g_main_context_ref(context);
      loop_ = g_main_loop_new(context, FALSE);
      listening(found, 0);
    }
    report(found, failure);
    if (found) {
      const std::uint16_t secure = service.listenSecurely();
      if (secure) listening(found, secure);
      reportSecure(secure);
      g_main_loop_run(loop_);
    }
  }
  // Finishes the closing connections, with a limit.
  for (int turn = 0; turn < kLastTurns && g_main_context_iteration(context, FALSE); ++turn) {
  }
  g_main_context_pop_thread_default(context);
  g_main_context_unref(context);
}

void HttpServer::report(std::uint16_t port, std::string failure) {
  const std::lock_guard lock(mutex_);
  port_ = port;
  failure_ = std::move(failure);
  ready_ = true;
  changed_.notify_all();
}

void HttpServer::reportSecure(std::uint16_t port) {
  const std::lock_guard lock(mutex_);
  securePort_ = port;
  changed_.notify_all();
}

}  // namespace sandbox
