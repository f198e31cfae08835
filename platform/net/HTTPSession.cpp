#include "platform/net/HTTPSession.h"

namespace platform {
namespace {

constexpr int kConnections = 32;
constexpr int kConnectionsPerHost = 8;
constexpr int kSecondsWithoutByte = 60;
constexpr int kSecondsKeptOpen = 60;
constexpr int kMostCookies = 500;

void addCookieJar(SoupSession* session);

gboolean startOverWithCookies(gpointer session) {
  soup_session_remove_feature_by_type(SOUP_SESSION(session), SOUP_TYPE_COOKIE_JAR);
  addCookieJar(SOUP_SESSION(session));
  return G_SOURCE_REMOVE;
}

/// Servers can set cookies without end; one that goes too far makes all be forgotten.
void countCookies(SoupCookieJar* jar, SoupCookie* former, SoupCookie* present, gpointer session) {
  const int change = (present ? 1 : 0) - (former ? 1 : 0);
  const int count = GPOINTER_TO_INT(g_object_get_data(G_OBJECT(jar), "count")) + change;
  g_object_set_data(G_OBJECT(jar), "count", GINT_TO_POINTER(count));
  if (count == kMostCookies && change > 0) {
    g_idle_add_full(G_PRIORITY_HIGH, startOverWithCookies, session, nullptr);
  }
}

void addCookieJar(SoupSession* session) {
  SoupCookieJar* const jar = soup_cookie_jar_new();
  g_signal_connect(jar, "changed", G_CALLBACK(countCookies), session);
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
  // Never destroyed: fetches may be under way while the process ends.
  static SoupSession* const session = makeSession();
  return session;
}

}  // namespace platform
