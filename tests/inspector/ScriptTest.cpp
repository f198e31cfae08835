// The ad engine script in a real page, assembled like in a client.
#include <gtest/gtest.h>

#include "platform/base/Json.h"
#include "sandbox/Http.h"
#include "sandbox/Sandbox.h"
#include "tests/inspector/Browser.h"
#include "tests/support/HttpClient.h"
#include "tests/support/Loop.h"

namespace platform = valdren::platform;

namespace {

using namespace inspector_tests;
using quorbel_tests::get;
using sandbox::Sandbox;

class Script : public ::testing::Test {
 protected:
  void SetUp() override {
    sandbox_ = Sandbox::start(0);
    ASSERT_TRUE(sandbox_);
    browser_ = std::make_unique<Browser>(200, 100);
  }

  /// The messages after the script was called with these parameters, once there are `count`.
  std::vector<std::string> answers(const platform::Dictionary& parameters, std::size_t count = 1,
                                   const std::string& prefix = "") {
    const std::string script = get(sandbox_->baseURL() + "/urvo/sdk-core-v40.js").body;
    const std::string json = *platform::writeJson(parameters);
    browser_->loadHTML("<html><head><script>" + script + "</script><script>URVO_buildAdURL(" +
                           json + ");</script></head><body></body></html>",
                       sandbox_->baseURL() + prefix);
    quorbel_tests::runUntil([&] { return browser_->messages().size() >= count; }, count ? 20 : 1);
    return browser_->messages();
  }

  static std::string name(const std::string& message) {
    const std::size_t from = message.rfind('/', message.find('?')) + 1;
    return message.substr(from, message.find('?') - from);
  }
  static std::string field(const std::string& message, const std::string& key) {
    sandbox::Request request;
    request.query = message.substr(std::min(message.find('?') + 1, message.size()));
    return request.parameter(key).value_or("");
  }

  std::unique_ptr<Sandbox> sandbox_;
  std::unique_ptr<Browser> browser_;
};

TEST_F(Script, BuildsAnAddressThatCarriesTheParametersWhole) {
  const platform::Dictionary parameters{
      {"slotname", "my unit & more"},
      {"preqs", 3},
      {"kw", platform::Array{"\"quoted\"", "</b>", "Z\xC3\xBCrich;a=b"}}};
  const auto messages = answers(parameters);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(name(messages[0]), "loadAdURL");
  EXPECT_EQ(field(messages[0], "type"), "qorm");
  const std::string url = field(messages[0], "url");
  ASSERT_TRUE(url.starts_with(sandbox_->baseURL() + "/ad?")) << url;
  EXPECT_EQ(field(url, "slotname"), "my unit & more");
  EXPECT_EQ(platform::parseJson(field(url, "params")), platform::Value(parameters));
  EXPECT_EQ(get(url).status, 200);
}

}  // namespace
