// Servers that violate the protocol: each fetch ends once, within its limits.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/net/URLConnection.h"
#include "tests/support/Fakes.h"
#include "tests/support/FetchRecorder.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/Process.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;
using Ending = LoopbackResponse::Ending;

constexpr std::size_t kLongestBody = 16 * 1024 * 1024;

struct HostileCase {
  const char* name;
  LoopbackResponse response;
  /// 0 when the fetch succeeds.
  int error;
};

HostileCase raw(const char* name, std::string text, int error, Ending ending = Ending::Complete,
                std::string tail = "") {
  return {name, {.raw = std::move(text), .ending = ending, .tail = std::move(tail)}, error};
}

const std::string kOK = "HTTP/1.1 200 OK\r\n";

TEST(HostileServerTest, EndsEachFetchOnceWithinItsLimits) {
  const HostileCase cases[] = {
      raw("NoWord", "\r\n", kURLErrorBadServerResponse, Ending::Cut),
      raw("GarbageStatusLine", "\x01\x02 what? \xFF\r\n\r\n", kURLErrorBadServerResponse),
      raw("CutInHeaders", kOK + "Content-Le", kURLErrorBadServerResponse, Ending::Cut),
      raw("EndlessStatusLine", "HTTP/1.1 200 ", kURLErrorNetworkConnectionLost, Ending::Endless,
          std::string(4096, 'x')),
      raw("EndlessHeaders", kOK, kURLErrorNetworkConnectionLost, Ending::Endless,
          "X-More: and more of it\r\n"),
      raw("EndlessInterimResponses", "HTTP/1.1 100 Continue\r\n\r\n",
          kURLErrorNetworkConnectionLost, Ending::Endless, "HTTP/1.1 100 Continue\r\n\r\n"),
      raw("EndlessBody", kOK + "\r\n", kURLErrorDataTooLong, Ending::Endless,
          std::string(65536, 'x')),
      raw("EndlessChunks", kOK + "Transfer-Encoding: chunked\r\n\r\n", kURLErrorDataTooLong,
          Ending::Endless, "10000\r\n" + std::string(65536, 'x') + "\r\n"),
      raw("HugeChunkSize", kOK + "Transfer-Encoding: chunked\r\n\r\nffffffffffffffffff\r\nabc\r\n",
          0),
      raw("CutInChunk", kOK + "Transfer-Encoding: chunked\r\n\r\n100\r\nabc",
          kURLErrorNetworkConnectionLost),
      raw("ShortBody", kOK + "Content-Length: 100\r\n\r\nshort", kURLErrorNetworkConnectionLost,
          Ending::Cut),
      raw("ZeroByteInHeader", kOK + std::string("X-Zero: a\0b\r\n", 13) + "\r\nbody",
          kURLErrorBadServerResponse),
      raw("NotGzip", kOK + "Content-Encoding: gzip\r\nContent-Length: 4\r\n\r\nnope", 0),
      {"GzipBomb",
       {.headers = {{"Content-Encoding", "gzip"}},
        .body = run("head -c 33M /dev/zero | gzip").output},
       kURLErrorDataTooLong},
      {"RedirectToNowhere",
       {.status = 302, .headers = {{"Location", "http://["}}},
       kURLErrorBadURL},
      {"RedirectWithEndlessBody",
       {.status = 302,
        .headers = {{"Location", "/"}},
        .body = std::string(65536, 'x'),
        .ending = Ending::Endless},
       kURLErrorTooManyRedirects},
      {"HugeLocation",
       {.status = 302, .headers = {{"Location", "/" + std::string(5000000, 'x')}}},
       kURLErrorNetworkConnectionLost}};
  for (const auto& [name, response, error] : cases) {
    SCOPED_TRACE(name);
    LoopbackServer server;
    server.answer("/", response);
    FetchRecorder fetch;
    fetch.keepsBody = false;
    ASSERT_TRUE(fetch.fetch(server.url("/")));
    EXPECT_EQ(fetch.errorCode(), error) << (fetch.error ? fetch.error->message : "");
    EXPECT_EQ(std::count(fetch.events.begin(), fetch.events.end(), "fail") +
                  std::count(fetch.events.begin(), fetch.events.end(), "finish"),
              1);
    EXPECT_LE(fetch.bodySize, kLongestBody);
  }
}

TEST(SilentServerTest, AFetchFailsAfterAMinuteWithoutData) {
  LoopbackServer server;
  server.answer("/never", {.delay = 1000});
  server.answer("/half", {.raw = kOK + "Content-Length: 9\r\n\r\nhalf", .ending = Ending::Hang});
  for (const char* path : {"/never", "/half"}) {
    FakeRunLoop patience;
    FetchRecorder fetch;
    ASSERT_TRUE(fetch.start(server.url(path)));
    ASSERT_TRUE(runUntil([&] { return !server.requests(path).empty(); }));
    const std::string expected = path == std::string("/half") ? "half" : "";
    ASSERT_TRUE(runUntil([&] { return fetch.body == expected; }));
    patience.advance(59);
    EXPECT_FALSE(fetch.isOver());
    patience.advance(2);
    EXPECT_EQ(fetch.errorCode(), kURLErrorTimedOut);
  }
}

TEST(SilentServerTest, AFetchWithSlowDataFailsAfterTenMinutes) {
  LoopbackServer server;
  server.answer("/", {.body = "x", .ending = Ending::Drip});
  FakeRunLoop patience;
  FetchRecorder fetch;
  ASSERT_TRUE(fetch.start(server.url("/")));
  for (int drop = 0; drop < 10 && !fetch.isOver(); ++drop) {
    const std::size_t received = fetch.bodySize;
    ASSERT_TRUE(runUntil([&] { return fetch.bodySize > received; }));
    patience.advance(55);
    EXPECT_FALSE(fetch.isOver());
  }
  ASSERT_TRUE(runUntil([&] { return fetch.bodySize > 11; }));
  patience.advance(55);
  EXPECT_EQ(fetch.errorCode(), kURLErrorTimedOut);
}

}  // namespace
}  // namespace valdren::platform
