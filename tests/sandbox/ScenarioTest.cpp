// Each scenario behaves as its row in the table says.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "platform/base/Text.h"
#include "sandbox/Sandbox.h"
#include "sandbox/Scenarios.h"
#include "tests/support/HttpClient.h"

namespace platform = valdren::platform;

namespace {

using namespace quorbel_tests;
using sandbox::Sandbox;

std::string adURL(const Sandbox& sandbox, const std::string& unit) {
  return sandbox.baseURL() + "/ad?slotname=" + unit + "&params=%7B%7D";
}

std::string bodyStart(const Reply& reply) {
  return reply.body.substr(0, 15);
}

TEST(Scenario, StatusesAndBodiesAreWhatTheTableSays) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  struct Row {
    const char* scenario;
    int status;
    const char* start;
  };
  for (const Row& row : {
           Row{"fill", 200, "<!DOCTYPE html>"},
           {"no-fill", 200, " \r\n\t\u00a0\u3000\n"},
           {"status-204", 204, ""},
           {"status-399", 399, "The sandbox was"},
           {"status-400", 400, "The sandbox was"},
           {"status-401", 401, "The sandbox was"},
           {"status-500", 500, "The sandbox was"},
           {"slow", 200, "<!DOCTYPE html>"},
           {"cut", 0, ""},
           {"large", 200, "<!DOCTYPE html>"},
           {"latin-1", 200, "<!DOCTYPE html>"},
       }) {
    const Reply reply = get(adURL(*sandbox, std::string("scenario-") + row.scenario));
    EXPECT_EQ(reply.status, row.status) << row.scenario;
    EXPECT_EQ(bodyStart(reply), row.start) << row.scenario;
  }
}

TEST(Scenario, TheBodyEndsWhereItShould) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const Reply whole = get(adURL(*sandbox, "scenario-dribble"));
  EXPECT_NE(whole.body.find("</html>"), std::string::npos) << "pieces are missing";

  const Reply cut = get(adURL(*sandbox, "scenario-cut-body"));
  EXPECT_EQ(cut.status, 0);
  EXPECT_FALSE(cut.body.empty());
  EXPECT_EQ(cut.body.find("</html>"), std::string::npos);

  EXPECT_GT(get(adURL(*sandbox, "scenario-large")).body.size(), 5'000'000U);

  constexpr std::size_t kEnough = std::size_t{40} * 1024 * 1024;
  const Reply endless = ask({.url = adURL(*sandbox, "scenario-endless"), .mostBytes = kEnough});
  EXPECT_GE(endless.body.size(), kEnough);
}

TEST(Scenario, NothingComesWhenItHangs) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const Reply reply = ask({.url = adURL(*sandbox, "scenario-hang"), .patienceSeconds = 1});
  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.body, "");
  EXPECT_EQ(get(adURL(*sandbox, "scenario-fill")).status, 200) << "one that hangs blocks others";
}

TEST(Scenario, EveryHopOfTheChainHasTrackersOfTheSameTicket) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  std::string url = adURL(*sandbox, "scenario-redirect-chain");
  std::string ticket;
  for (int hop = 0; hop < 3; ++hop) {
    const Reply reply = get(url);
    ASSERT_EQ(reply.status, 302);
    const std::string tracker = reply.header("X-Urvo-Tracking-Urls");
    const std::string begin = sandbox->baseURL() + "/imp/";
    ASSERT_TRUE(tracker.starts_with(begin)) << tracker;
    const std::string found = tracker.substr(begin.size(), tracker.find('?') - begin.size());
    if (hop == 0) ticket = found;
    EXPECT_EQ(found, ticket);
    EXPECT_TRUE(
        reply.header("X-Urvo-Click-Tracking-Urls").starts_with(sandbox->baseURL() + "/clk/"));
    url = reply.header("Location");
  }
  const Reply last = get(url);
  EXPECT_EQ(last.status, 200);
  EXPECT_NE(last.header("X-Urvo-Tracking-Urls").find(ticket), std::string::npos);
}

TEST(Scenario, RedirectsLeadInCirclesOrToTheStore) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  std::string url = adURL(*sandbox, "scenario-redirect-loop");
  for (int hop = 0; hop < 30; ++hop) {
    const Reply reply = get(url);
    ASSERT_EQ(reply.status, 302) << hop;
    url = reply.header("Location");
  }
  EXPECT_TRUE(get(adURL(*sandbox, "scenario-redirect-store"))
                  .header("Location")
                  .starts_with("itms-apps://"));
}

TEST(Scenario, SpoiltEncodingsAreNoUTF8) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  for (const char* name : {"latin-1", "invalid-utf8"}) {
    const Reply reply = get(adURL(*sandbox, std::string("scenario-") + name));
    EXPECT_FALSE(platform::isUTF8(reply.body)) << name;
  }
}

TEST(Scenario, HeadersCarryTheOddTrackersAndRates) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const auto header = [&](const char* scenario, const char* name) {
    return get(adURL(*sandbox, std::string("scenario-") + scenario)).header(name);
  };
  EXPECT_EQ(header("status-500", "X-Urvo-Refresh-Rate"), "2");
  EXPECT_EQ(header("refresh-fast", "X-Urvo-Refresh-Rate"), "1");
  EXPECT_EQ(header("refresh-nonsense", "X-Urvo-Refresh-Rate"), "soon");
  EXPECT_GT(header("trackers-many", "X-Urvo-Tracking-Urls").size(), 30'000U);
  EXPECT_NE(header("trackers-bad", "X-Urvo-Tracking-Urls").find("not[a]url"), std::string::npos);
}

TEST(Scenario, TheScriptHostFailsOnlyInItsOwnScenarios) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const auto script = [&](const char* scenario) {
    return ask({.url = sandbox->baseURL() + "/as/" + scenario + "/urvo/sdk-core-v40.js",
                .patienceSeconds = 1});
  };
  EXPECT_EQ(script("script-404").status, 404);
  EXPECT_EQ(script("script-500").status, 500);
  EXPECT_EQ(script("script-hang").status, 0);
  EXPECT_EQ(script("script-cut").status, 0);
  EXPECT_EQ(script("script-empty").body, "");
  EXPECT_EQ(script("script-garbage").body.find("URVO_buildAdURL"), std::string::npos);
  for (const char* name : {"fill", "status-500", "script-errors", "no-such-scenario"}) {
    const Reply reply = script(name);
    EXPECT_EQ(reply.status, 200) << name;
    EXPECT_NE(reply.body.find("URVO_buildAdURL"), std::string::npos) << name;
  }
}

TEST(Scenario, NamesAreUniqueAndActable) {
  std::set<std::string_view> names;
  for (const sandbox::Scenario& each : sandbox::scenarios()) {
    EXPECT_TRUE(names.insert(each.name).second) << each.name;
    EXPECT_EQ(each.answer == nullptr, each.actor == sandbox::Actor::Script) << each.name;
    EXPECT_FALSE(each.does.empty() || each.expected.empty()) << each.name;
  }
}

TEST(Scenario, TheManualHasEachRowAsItIs) {
  std::ifstream file(SANDBOX_MANUAL);
  std::stringstream manual;
  manual << file.rdbuf();
  for (const sandbox::Scenario& each : sandbox::scenarios()) {
    const std::string row = "| `" + std::string(each.name) + "` | " + std::string(each.does) +
                            " | " + std::string(each.expected) + " |";
    EXPECT_NE(manual.str().find(row), std::string::npos) << "docs/sandbox.md lacks: " << row;
  }
}

}  // namespace
