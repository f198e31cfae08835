// The switch of what clients get, and the server and its program.
#include "sandbox/Sandbox.h"

#include <gtest/gtest.h>

#include "tests/sandbox/Network.h"
#include "tests/support/FetchRecorder.h"
#include "tests/support/Loop.h"
#include "tests/support/Process.h"

namespace {

using quorbel_tests::FetchRecorder;
using quorbel_tests::run;
using sandbox::Sandbox;
using sandbox_tests::Network;

int control(Network& network, const std::string& query, const sandbox::Fields& headers = {}) {
  return network.ask("/control?" + query, headers, "POST").status;
}

TEST(Switch, PutsUnitsThatNameNoneInTheScenario) {
  Network network;
  EXPECT_EQ(control(network, "scenario=status-401"), 200);
  const std::pair<const char*, int> cases[] = {
      {"/ad?slotname=unit", 401},
      {"/ad?slotname=scenario-status-400", 400},
      {"/as/status-500/ad?slotname=unit", 500},
      {"/ad?slotname=ad-harbour", 200},
  };
  for (const auto& [address, status] : cases) {
    EXPECT_EQ(network.ask(address).status, status) << address;
  }
  EXPECT_EQ(network.ask("/choice.json").body, R"({"scenario":"status-401"})");
  // A scenario of the script does not affect the ad server.
  EXPECT_TRUE(network.setScenario("script-errors"));
  EXPECT_EQ(network.ask("/ad?slotname=unit").status, 200);
}

TEST(Switch, RefusesStrangersAndWhatItDoesNotKnow) {
  Network network;
  ASSERT_TRUE(network.setScenario("status-400"));
  EXPECT_FALSE(network.setScenario("unheard-of"));
  EXPECT_EQ(control(network, "scenario=unheard-of"), 400);
  EXPECT_EQ(control(network, "ad=unheard-of"), 400);
  EXPECT_EQ(network.ask("/control?scenario=fill").status, 405);
  EXPECT_EQ(control(network, "scenario=fill", {{"Origin", "http://elsewhere.example"}}), 403);
  EXPECT_EQ(network.ask("/ad?slotname=unit").status, 400) << "what was set is kept";
  EXPECT_EQ(control(network, "refresh=7", {{"Origin", "http://127.0.0.1:80"}}), 200);
  EXPECT_EQ(network.ask("/log.json", {{"Host", "elsewhere.example:80"}}).status, 403);
  EXPECT_EQ(network.ask("/log.json", {{"Host", "localhost:1"}}).status, 200);
}

TEST(Switch, TheManualHasEachScenarioAsItIs) {
  const std::string manual = quorbel_tests::readFile(SANDBOX_MANUAL);
  for (const sandbox::Scenario& each : sandbox::scenarios()) {
    const std::string row = "| `" + std::string(each.name) + "` | " + std::string(each.does) +
                            " | " + std::string(each.expected) + " |";
    EXPECT_NE(manual.find(row), std::string::npos) << "docs/sandbox.md lacks: " << row;
  }
}

TEST(Sandbox, ServesOthersAndEndsAtOnceWhileAnswersAreUnderWay) {
  auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  const auto unit = [&](const char* name) {
    return *platform::URL::parse(sandbox->baseURL() + "/ad?slotname=scenario-" + name);
  };
  FetchRecorder unfinished[4];
  int count = 0;
  for (const char* name : {"hang", "endless", "dribble", "slow"}) {
    unfinished[count].keepsBody = false;
    ASSERT_TRUE(unfinished[count++].start(unit(name)));
  }
  FetchRecorder whole;
  ASSERT_TRUE(whole.fetch(unit("fill")));
  EXPECT_EQ(whole.response->statusCode, 200);
  EXPECT_TRUE(quorbel_tests::runUntil([&] { return unfinished[1].bodySize > 0; }));
  sandbox.reset();
  for (const FetchRecorder& each : unfinished) EXPECT_FALSE(each.finished);
}

TEST(Program, AnswersItsOptionsAndRefusesOthers) {
  const std::string program = SANDBOX_PROGRAM;
  EXPECT_NE(run(program + " --help").output.find("--port="), std::string::npos);
  EXPECT_TRUE(run(program + " --version").output.starts_with("valdren-sandbox "));
  for (const char* wrong :
       {"--port", "--port 0", "--port 65536", "--port 80x", "--port=", "--x", "80"}) {
    const auto finished = run(program + " " + wrong);
    EXPECT_EQ(finished.status, 2) << wrong;
    EXPECT_EQ(finished.output, "") << wrong;
    EXPECT_NE(finished.errors.find("valdren-sandbox: "), std::string::npos) << wrong;
  }
}

TEST(Program, ServesUntilItIsTold) {
  const auto busy = Sandbox::start(0);
  ASSERT_TRUE(busy);
  const std::string base = busy->baseURL();
  const auto taken =
      run(std::string(SANDBOX_PROGRAM) + " --port " + base.substr(base.rfind(':') + 1));
  EXPECT_EQ(taken.status, 1);
  EXPECT_NE(taken.errors.find("cannot listen on port"), std::string::npos) << taken.errors;

  const auto served =
      run("timeout --preserve-status -s TERM 3 " + std::string(SANDBOX_PROGRAM) + "; echo $?");
  EXPECT_NE(served.output.find("Inspector: http://127.0.0.1:"), std::string::npos) << served.output;
  EXPECT_TRUE(served.output.ends_with("\n0\n")) << "was not ended cleanly: " << served.output;
}

}  // namespace
