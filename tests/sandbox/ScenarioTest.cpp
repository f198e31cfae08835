// Each scenario behaves as its row in the table says.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "tests/sandbox/Network.h"

namespace {

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
