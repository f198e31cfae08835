// The whole server: settings, ports, end.
#include "sandbox/Sandbox.h"

#include <gtest/gtest.h>

#include <thread>

#include "sandbox/Pages.h"
#include "tests/support/HttpClient.h"
#include "tests/support/Process.h"

namespace {

using namespace quorbel_tests;
using quorbel_tests::run;
using sandbox::Sandbox;

Reply post(const Sandbox& sandbox, const std::string& query, const Headers& headers = {}) {
  return ask(
      {.url = sandbox.baseURL() + "/control?" + query, .method = "POST", .headers = headers});
}

int adStatus(const Sandbox& sandbox, const std::string& path = "/ad?slotname=unit") {
  return get(sandbox.baseURL() + path).status;
}

TEST(Switch, PutsUnitsThatNameNoneInTheScenario) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  EXPECT_EQ(post(*sandbox, "scenario=status-401").status, 200);
  EXPECT_EQ(adStatus(*sandbox), 401);
  EXPECT_EQ(adStatus(*sandbox, "/ad?slotname=scenario-status-400"), 400);
  EXPECT_EQ(adStatus(*sandbox, "/as/status-500/ad?slotname=unit"), 500);
  EXPECT_EQ(adStatus(*sandbox, "/ad?slotname=ad-harbour"), 200);
  EXPECT_EQ(object(get(sandbox->baseURL() + "/choice.json")).find("scenario")->description(),
            "status-401");
  // A scenario of the script does not affect the ad server.
  EXPECT_TRUE(sandbox->setScenario("script-errors"));
  EXPECT_EQ(adStatus(*sandbox), 200);
}

TEST(Switch, RefusesWhatItDoesNotKnowAndKeepsWhatWasSet) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  ASSERT_TRUE(sandbox->setScenario("status-400"));
  EXPECT_FALSE(sandbox->setScenario("unheard-of"));
  EXPECT_EQ(post(*sandbox, "scenario=unheard-of").status, 400);
  EXPECT_EQ(post(*sandbox, "ad=unheard-of").status, 400);
  EXPECT_EQ(get(sandbox->baseURL() + "/control?scenario=fill").status, 405);
  EXPECT_EQ(adStatus(*sandbox), 400);
}

TEST(Switch, IsShutToOtherSites) {
  const auto sandbox = Sandbox::start(0);
  ASSERT_TRUE(sandbox);
  EXPECT_EQ(post(*sandbox, "scenario=status-400", {{"Origin", "http://elsewhere.example"}}).status,
            403);
  EXPECT_EQ(post(*sandbox, "refresh=7", {{"Origin", sandbox->baseURL()}}).status, 200);
  const std::string log = sandbox->baseURL() + "/log.json";
  EXPECT_EQ(ask({.url = log, .headers = {{"Host", "elsewhere.example:80"}}}).status, 403);
  EXPECT_EQ(ask({.url = log, .headers = {{"Host", "localhost:1"}}}).status, 200);
}

TEST(Sandbox, SaysWhenThePortIsTaken) {
  const auto first = Sandbox::start(0);
  ASSERT_TRUE(first);
  const std::string base = first->baseURL();
  const auto port = static_cast<std::uint16_t>(std::stoi(base.substr(base.rfind(':') + 1)));
  EXPECT_FALSE(Sandbox::start(port));
  EXPECT_EQ(get(base + "/").status, 200);
}

TEST(Sandbox, EndsAtOnceWhileAnswersAreUnderWay) {
  for (const char* unit :
       {"scenario-hang", "scenario-endless", "scenario-dribble", "scenario-slow"}) {
    auto sandbox = Sandbox::start(0);
    ASSERT_TRUE(sandbox);
    std::size_t received = 0;
    std::thread client([&received, url = sandbox->baseURL() + "/ad?slotname=" + unit] {
      received = ask({.url = url, .mostBytes = std::size_t{1} << 31}).body.size();
    });
    while (sandbox->log().find("\"kind\":\"ad\"") == std::string::npos) std::this_thread::yield();
    sandbox.reset();
    client.join();
    // The size at which the endless body would have ended.
    EXPECT_LT(received, std::size_t{1} << 30) << unit << " had to be waited for";
  }
}

TEST(Program, AnswersItsOptionsAndRefusesOthers) {
  const std::string program = SANDBOX_PROGRAM;
  EXPECT_EQ(run(program + " --help").status, 0);
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
