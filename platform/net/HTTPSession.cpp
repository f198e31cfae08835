#include "platform/net/HTTPSession.h"

#include "platform/base/MainThread.h"

namespace valdren::platform {
namespace {

constexpr int kConnections = 32;
constexpr int kConnectionsPerHost = 8;
constexpr int kSecondsWithoutByte = 60;
constexpr int kSecondsKeptOpen = 60;
constexpr int kMostCookies = 500;

gboolean forgetCookies(gpointer object) {
  auto* const jar = static_cast<SoupCookieJar*>(object);
  GSList* const cookies = soup_cookie_jar_all_cookies(jar);
  for (GSList* each = cookies; each; each = each->next) {
    soup_cookie_jar_delete_cookie(jar, static_cast<SoupCookie*>(each->data));
  }
  g_slist_free_full(cookies,
                    [](gpointer cookie) { soup_cookie_free(static_cast<SoupCookie*>(cookie)); });
  return G_SOURCE_REMOVE;
}

/// Bounds the number of cookies. All are deleted when it reaches the limit.
void countCookies(SoupCookieJar* jar, SoupCookie* former, SoupCookie* present, gpointer counter) {
  int& count = *static_cast<int*>(counter);
  const int change = (present ? 1 : 0) - (former ? 1 : 0);
  count += change;
  if (count == kMostCookies && change > 0) {
    g_idle_add_full(G_PRIORITY_HIGH, forgetCookies, jar, nullptr);
  }
}

void addCookieJar(SoupSession* session) {
  static int count = 0;
  SoupCookieJar* const jar = soup_cookie_jar_new();
  g_signal_connect(jar, "changed", G_CALLBACK(countCookies), &count);
  soup_session_add_feature(session, SOUP_SESSION_FEATURE(jar));
  g_object_unref(jar);
}

SoupSession* makeSession() {
  SoupSession* const session = soup_session_new_with_options(
      "max-conns", kConnections, "max-conns-per-host", kConnectionsPerHost, "timeout",
      kSecondsWithoutByte, "idle-timeout", kSecondsKeptOpen, nullptr);
  addCookieJar(session);
  return session;
}

}  // namespace

SoupSession* sharedHTTPSession() {
  assertMainThread();
  // Never destroyed: fetches may still run while the process ends.
  static SoupSession* const session = makeSession();
  return session;
}

}  // namespace valdren::platform
