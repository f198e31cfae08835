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

TEST(Scenario, NothingComesWhenItHangs) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const Reply reply = ask({.url = adURL(*sandbox, "scenario-hang"), .patienceSeconds = 1});
  EXPECT_EQ(reply.status, 0);
  EXPECT_EQ(reply.body, "");
  EXPECT_EQ(get(adURL(*sandbox, "scenario-fill")).status, 200) << "one that hangs blocks others";
}

TEST(Scenario, SpoiltEncodingsAreNoUTF8) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  for (const char* name : {"latin-1", "invalid-utf8"}) {
    const Reply reply = get(adURL(*sandbox, std::string("scenario-") + name));
    EXPECT_FALSE(platform::isUTF8(reply.body)) << name;
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
