// The inspector in a real engine. It must show data as text only.
#include <gtest/gtest.h>

#include "platform/base/Json.h"
#include "platform/base/PercentEncoding.h"
#include "sandbox/Sandbox.h"
#include "tests/support/FetchRecorder.h"
#include "tests/support/WebPage.h"

namespace platform = valdren::platform;

namespace {

using quorbel_tests::FetchRecorder;
using sandbox::Sandbox;

constexpr const char* kHostile = "<img src=x onerror=\"window.hacked=1\"><script>hacked=1</script>";

class Inspector : public ::testing::Test {
 protected:
  void SetUp() override {
    sandbox_ = Sandbox::start(0);
    ASSERT_TRUE(sandbox_);
    browser_.show({1200, 900});
  }
  std::string address(const std::string& path = "/") const { return sandbox_->baseURL() + path; }

  /// Fetches the path and waits.
  std::unique_ptr<FetchRecorder> get(const std::string& path,
                                     const platform::Headers& headers = {}) const {
    auto fetch = std::make_unique<FetchRecorder>();
    EXPECT_TRUE(fetch->fetch(platform::URLRequest{*platform::URL::parse(address(path)), headers}));
    return fetch;
  }
  /// Requests an ad and returns its ticket.
  std::string requestAd(platform::Dictionary parameters, const std::string& unit = "ad-harbour") {
    parameters.set("slotname", unit);
    const auto ad = get("/ad?slotname=" + platform::percentEncoded(unit) +
                        "&params=" + platform::percentEncoded(*platform::writeJson(parameters)));
    const std::string trackers = ad->response->headers["X-Urvo-Tracking-Urls"];
    const std::string begin = address("/imp/");
    return trackers.substr(begin.size(), trackers.find(' ') - begin.size());
  }
  /// A complete click, reported by the next request.
  std::string clickAndReport() {
    std::string ticket = requestAd({{"preqs", 1}});
    get("/imp/" + ticket);
    get("/clk/" + ticket + "?ai=" + ticket);
    get("/land/plain?t=" + ticket);
    requestAd({{"preqs", 2},
               {"pcc", 1},
               {"pit", "/" + ticket},
               {"ppcl", "750"},
               {"pcl", "3200"},
               {"plpl", "90"},
               {"prl", "120"},
               {"plpnc", 2}});
    return ticket;
  }

  std::unique_ptr<Sandbox> sandbox_;
  quorbel_tests::Page browser_{{0, 0, 1200, 900}};
};

TEST_F(Inspector, ShowsClientsTextsAsTextOnly) {
  requestAd({{"kw", platform::Array{kHostile}}, {kHostile, kHostile}, {"uule", "a+bG9jYXRpb24"}},
            kHostile);
  get("/clk/" + platform::percentEncoded(kHostile), {{"User-Agent", kHostile}});
  ASSERT_TRUE(browser_.go(address()));
  ASSERT_TRUE(browser_.holds("document.querySelectorAll('#timeline li').length === 2"));
  browser_.evaluate(
      "document.querySelectorAll('details').forEach(function (each) { each.open = true; })");
  ASSERT_TRUE(browser_.holds("document.querySelectorAll('.detail').length === 2"));
  EXPECT_EQ(browser_.evaluate("document.querySelectorAll('img, li script').length"), "0");
  EXPECT_EQ(browser_.evaluate("typeof hacked"), "undefined");
  const std::string text = browser_.evaluate("document.querySelector('#timeline').textContent");
  EXPECT_NE(text.find("<img src=x"), std::string::npos);
  EXPECT_NE(text.find("location, encrypted"), std::string::npos);
  EXPECT_NE(text.find("the same, decrypted"), std::string::npos);
}

TEST_F(Inspector, TellsClicksJourneysLiveAndKeepsWhatIsOpen) {
  const std::string ticket = clickAndReport();
  ASSERT_TRUE(browser_.go(address()));
  ASSERT_TRUE(browser_.holds("document.querySelectorAll('.journey').length === 1"));
  EXPECT_EQ(browser_.evaluate("document.querySelector('.journey code').textContent"), ticket);
  EXPECT_EQ(browser_.evaluate("document.querySelectorAll('.journey .steps li.done').length"), "5");
  const std::string report = browser_.evaluate("document.querySelector('.report').innerText");
  for (const char* part : {"750 ms", "3.2 s", "90 ms", "links followed, http"}) {
    EXPECT_NE(report.find(part), std::string::npos) << part << " in " << report;
  }
  EXPECT_EQ(browser_.evaluate("document.querySelectorAll('#charts rect').length"), "3");

  browser_.evaluate("document.querySelector('#timeline details').open = true");
  get("/clk/" + requestAd({{"preqs", 3}}));
  ASSERT_TRUE(browser_.holds("document.querySelectorAll('.journey').length === 2"));
  EXPECT_EQ(browser_.evaluate("document.querySelectorAll('#timeline details[open]').length"), "1");
  EXPECT_EQ(browser_.evaluate("document.querySelectorAll('.journey details[open]').length"), "1");
  browser_.evaluate("document.getElementById('clear').click()");
  EXPECT_TRUE(browser_.holds("document.querySelectorAll('#timeline li, .journey').length === 0"));
}

TEST_F(Inspector, SwitchesWhatClientsGet) {
  ASSERT_TRUE(browser_.go(address()));
  ASSERT_TRUE(browser_.holds("document.querySelectorAll('#scenario option').length > 30"));
  const auto choose = [&](const std::string& id, const std::string& value) {
    browser_.evaluate("(function () { var box = document.getElementById('" + id +
                      "'); box.value = '" + value +
                      "'; box.dispatchEvent(new Event('change')); })()");
  };
  choose("scenario", "status-401");
  EXPECT_TRUE(browser_.holds("document.getElementById('does').textContent === 'Status 401.'"));
  EXPECT_EQ(get("/ad?slotname=unit")->response->statusCode, 401);
  choose("scenario", "fill");
  choose("ad", "alpine");
  EXPECT_TRUE(browser_.holds("!document.getElementById('preview').hidden"));
  EXPECT_NE(get("/ad?slotname=unit")->body.find("Alpenglow"), std::string::npos);
}

TEST_F(Inspector, SaysWhenTheSandboxIsGoneAndFindsAnother) {
  const std::string base = sandbox_->baseURL();
  clickAndReport();
  ASSERT_TRUE(browser_.go(address()));
  ASSERT_TRUE(browser_.holds("document.querySelectorAll('#timeline li').length === 5"));
  sandbox_.reset();
  EXPECT_TRUE(browser_.holds("document.getElementById('connection').className === 'lost'"));
  sandbox_ =
      Sandbox::start(static_cast<std::uint16_t>(std::stoi(base.substr(base.rfind(':') + 1))));
  if (!sandbox_) GTEST_SKIP() << "the port was taken by another program meanwhile";
  requestAd({{"preqs", 9}});
  EXPECT_TRUE(browser_.holds("document.querySelectorAll('#timeline li').length === 1"));
}

}  // namespace
