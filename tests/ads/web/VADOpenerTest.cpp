// What the opener opens for the messages and links of pages, and what it leaves alone.
#include "ads/web/VADOpener.h"

#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADWebAppViewController.h"
#include "ads/support/VADNotification.h"
#include "ads/telemetry/VADClickTracker.h"
#include "platform/MailComposer.h"
#include "tests/ads/screens/ScreenTest.h"
#include "tests/support/FakeURLLoading.h"

namespace valdren {
namespace {

/// Writes down what a message leads to.
class RecordingOpener final : public VADOpener {
 public:
  void openBrowserToURL(const std::optional<platform::URL>& url, int orientations) override {
    add("browser", url, orientations);
  }
  void openWebApp(const std::optional<platform::URL>& url, int orientations) override {
    add("webapp", url, orientations);
  }
  void openWebAppWithHTML(const std::optional<std::string>& html, int orientations) override {
    opened.push_back("html " + html.value_or("none") + " " + std::to_string(orientations));
  }
  void openApp(const std::optional<platform::URL>& url) override { add("app", url, 0); }

  std::vector<std::string> opened;

 private:
  void add(const std::string& what, const std::optional<platform::URL>& url, int orientations) {
    opened.push_back(what + " " + (url ? url->absoluteString() : "none") + " " +
                     std::to_string(orientations));
  }
};

/// A loader with click pings, which counts how often they are fired.
struct Loader final : VADAdController {
  VADState state() const override { return kVADStateShowingAd; }
  void changeState(VADState) override {}
  double timeLastLoaded() const override { return 0; }
  const std::shared_ptr<VADRequestPrivate>& request() const override { return request_; }
  const std::shared_ptr<VADDelegateManager>& delegateManager() const override { return manager_; }
  platform::ViewController* rootViewController() const override { return nullptr; }
  const std::shared_ptr<VADWebView>& webView() const override { return webView_; }
  std::vector<platform::URL> pendingTrackingURLs() const override { return {}; }
  std::vector<platform::URL> pendingClickURLs() const override { return {clickURL}; }
  int supportedOrientations() const override { return kVADOrientationAny; }
  void trackURLs(const std::vector<platform::URL>& urls) override { tracked += urls.size(); }

  platform::URL clickURL = *platform::URL::parse("http://ads.example/click");
  std::size_t tracked = 0;

 private:
  std::shared_ptr<VADRequestPrivate> request_;
  std::shared_ptr<VADDelegateManager> manager_;
  std::shared_ptr<VADWebView> webView_;
};

struct RecordingMailService final : platform::MailService {
  void compose(const platform::MailMessage& message,
               std::function<void(platform::MailResult)> finished) override {
    messages.push_back(message);
    answer = std::move(finished);
  }
  std::vector<platform::MailMessage> messages;
  std::function<void(platform::MailResult)> answer;
  Replacement replacement{*this};
};

class VADOpenerTest : public quorbel_tests::ScreenTest {
 protected:
  VADOpenerTest() {
    opener->setDelegateManager(manager);
    opener->setViewController(host.get());
    opener->setAdController(loader.get());
  }

  quorbel_tests::FakeURLLoading loading;
  RecordingMailService mail;
  std::shared_ptr<Loader> loader = std::make_shared<Loader>();
  std::unique_ptr<VADOpener> opener = std::make_unique<VADOpener>();
};

TEST_F(VADOpenerTest, OpensWhatTheMessageSays) {
  const std::string large(1 << 20, 'x');
  const struct {
    std::string query;
    std::string opened;
  } kCases[] = {
      {"a=browser&u=http%3A%2F%2Fb%2F", "browser http://b/ 1"},
      {"a=browser&u=http%3A%2F%2Fb%2F&o=l", "browser http://b/ 3"},
      {"a=browser&u=http%3A%2F%2Fb%2F&o=p", "browser http://b/ 2"},
      {"a=browser&u=http%3A%2F%2Fb%2F&o=x", "browser http://b/ 1"},
      {"a=browser&u=http%3A%2F%2Fb%2F&o=L", "browser http://b/ 1"},
      {"a=video&u=http%3A%2F%2Fb%2Fv.mp4", "browser http://b/v.mp4 1"},
      {"a=webapp&u=http%3A%2F%2Fb%2F&html=x", "webapp http://b/ 1"},
      {"a=webapp&html=%3Cp%3E&o=l", "html <p> 3"},
      {"a=webapp&u=&html=x", "html x 1"},
      {"a=webapp", ""},
      {"a=browser&html=x", ""},
      {"html=x", ""},
      {"a=call&u=tel%3A1", "app tel:1 0"},
      {"a=app&u=other%3A%2F%2F", "app other:// 0"},
      {"a=Browser&u=http%3A%2F%2Fb%2F", "app http://b/ 0"},
      {"a=&u=http%3A%2F%2Fb%2F", "app http://b/ 0"},
      {"u=http%3A%2F%2Fb%2F", "app http://b/ 0"},
      {"a=browser&u=", ""},
      {"", ""},
      {"a=browser&a=webapp&u=http%3A%2F%2Fa%2F&u=http%3A%2F%2Fb%2F", "webapp http://b/ 1"},
      {"a=browser&u=http%3A%2F%2Fb%2Fa%20b", "browser http://b/a%20b 1"},
      {"a=webapp&html=" + large, "html " + large + " 1"},
      {"a=browser&u=http%3A%2F%2Fb%2F" + large + large + large, ""},
      {"a=" + large + "&u=tel%3A1", "app tel:1 0"},
  };
  for (const auto& each : kCases) {
    RecordingOpener recording;
    const auto message = VADNotification::notificationFromURL(
        platform::URL::parse("gmsg://x/open?" + each.query).value_or(url("gmsg://x/open")));
    recording.openNotification(*message);
    const std::vector<std::string> expected =
        each.opened.empty() ? std::vector<std::string>{} : std::vector{each.opened};
    EXPECT_TRUE(recording.opened == expected) << each.query.substr(0, 60);
  }
  RecordingOpener recording;
  recording.openNotification(*VADNotification::notificationFromURL(url("gmsg://x/open")));
  EXPECT_TRUE(recording.opened.empty());
}

TEST_F(VADOpenerTest, HandsItsOwnToTheScreensAndFiresTheClickPings) {
  platform::WebView opening;
  opener->setOpeningWebView(&opening);
  opener->setReferringURL(url("http://ads.example/banner"));
  opener->openBrowserToURL(url("http://b.example/"), kVADOrientationLandscape);
  auto* const browser = dynamic_cast<VADBrowserController*>(window->topViewController());
  ASSERT_NE(browser, nullptr);
  EXPECT_EQ(browser->supportedOrientations(), kVADOrientationLandscape);
  EXPECT_EQ(browser->openingWebView(), &opening);
  EXPECT_EQ(browser->delegateManager(), manager);
  EXPECT_EQ(engines.last().requests.at(0).headers.at("Referer"), "http://ads.example/banner");
  EXPECT_EQ(loader->tracked, 1u);
  browser->relinquishScreen();

  opener->openWebAppWithHTML("<p>", kVADOrientationPortrait);
  auto* const webApp = dynamic_cast<VADWebAppViewController*>(window->topViewController());
  ASSERT_NE(webApp, nullptr);
  EXPECT_EQ(webApp->supportedOrientations(), kVADOrientationPortrait);
  EXPECT_EQ(webApp->openingWebView(), &opening);
  EXPECT_EQ(engines.last().pages.at(0).text, "<p>");
  EXPECT_EQ(loader->tracked, 2u);
  webApp->relinquishScreen();
  loop.advance(3);
}

TEST_F(VADOpenerTest, OpensNothingWithoutADestinationOrAScreenToOpenItOver) {
  opener->openBrowserToURL(std::nullopt, 1);
  opener->openWebApp(std::nullopt, 1);
  opener->openWebAppWithHTML(std::nullopt, 1);
  opener->openApp(std::nullopt);
  opener->openEmailComposer(std::nullopt);
  opener->setViewController(nullptr);
  opener->openBrowserToURL(url("http://b/"), 1);
  opener->openWebApp(url("http://b/"), 1);
  opener->openWebAppWithHTML("<p>", 1);
  opener->openEmailComposer(url("mailto:a@b"));
  loop.advance(1);
  EXPECT_EQ(window->topViewController(), host.get());
  EXPECT_TRUE(mail.messages.empty());
  EXPECT_TRUE(application.openedURLs.empty());
  EXPECT_EQ(loader->tracked, 0u);
}

TEST_F(VADOpenerTest, APublisherMayThrowTheAdAwayWhenToldOfIt) {
  record.onWillPresent = [this] {
    opener.reset();
    loader.reset();
  };
  opener->openWebApp(url("http://b.example/"), 1);
  EXPECT_NE(window->topViewController(), host.get());
}

TEST_F(VADOpenerTest, TellsThePublisherBeforeTheSystemOpensAnother) {
  opener->openApp(url("tel:1"));
  EXPECT_EQ(record.take(), (Events{"will leave"}));
  EXPECT_TRUE(application.openedURLs.empty());
  opener.reset();
  loop.advance(0);
  EXPECT_EQ(application.openedURLs, std::vector<std::string>{"tel:1"});
}

/// An application whose system has no background tasks, so that pings are unprotected.
class WithoutBackgroundTasks final : public platform::Application {
 public:
  explicit WithoutBackgroundTasks(platform::Application& other) : other_(other) {}
  platform::ApplicationState applicationState() const override { return {}; }
  bool isStatusBarHidden() const override { return false; }
  void setStatusBarHidden(bool) override {}
  double statusBarHeight() const override { return 0; }
  platform::InterfaceOrientation statusBarOrientation() const override { return {}; }
  bool isIdleTimerDisabled() const override { return false; }
  void setIdleTimerDisabled(bool) override {}
  void openURL(const platform::URL& url) override { other_.openURL(url); }
  bool canOpenURL(const platform::URL&) const override { return false; }
  platform::BackgroundTaskID beginBackgroundTask(std::function<void()>) override { return 0; }
  void endBackgroundTask(platform::BackgroundTaskID) override {}

 private:
  platform::Application& other_;
  Replacement replacement_{*this};
};

TEST_F(VADOpenerTest, GivesPingsUnderWayThreeTurnsToLeaveAndThenOpens) {
  WithoutBackgroundTasks system(application);
  const auto tracker = std::make_shared<VADClickTracker>();
  tracker->trackURL(url("http://ads.example/ping"));
  ASSERT_TRUE(VADClickTracker::activeTrackings());
  for (int round = 0; round < 2; ++round) {
    application.openedURLs.clear();
    loader->tracked = 0;
    opener->openApp(url("tel:1"));
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(loader->tracked, std::size_t(i + 1));
      EXPECT_EQ(record.take(), Events{});
      loop.advance(0.3);
    }
    EXPECT_EQ(loader->tracked, 4u);
    EXPECT_EQ(record.take(), (Events{"will leave"}));
    loop.advance(0);
    EXPECT_EQ(application.openedURLs, std::vector<std::string>{"tel:1"}) << round;
  }
  tracker->reset();
}

TEST_F(VADOpenerTest, OpensAtOnceWhenThePingIsOverOrTheBannerGone) {
  WithoutBackgroundTasks system(application);
  const auto tracker = std::make_shared<VADClickTracker>();
  tracker->trackURL(url("http://ads.example/ping"));
  opener->openApp(url("tel:1"));
  loop.advance(0.1);
  tracker->reset();
  opener.reset();
  loader.reset();
  EXPECT_TRUE(application.openedURLs.empty());
  loop.advance(0.3);
  EXPECT_EQ(application.openedURLs, std::vector<std::string>{"tel:1"});
  EXPECT_EQ(record.take(), (Events{"will leave"}));
}

TEST_F(VADOpenerTest, FillsAMailInFromItsURL) {
  using Texts = std::vector<std::string>;
  const struct {
    const char* url;
    Texts to, cc, bcc;
    const char* subject;
    const char* body;
  } kCases[] = {
      {"mailto:a@b", {"a@b"}, {}, {}, "", ""},
      {"mailto:a@b?cc=c@d,e@f&subject=Hi", {"a@b"}, {"c@d", "e@f"}, {}, "Hi", ""},
      {"MAILTO:a@b?BCC=g@h&body=one%0Atwo", {"a@b"}, {}, {"g@h"}, "", "one\ntwo"},
      {"mailto:a%40b?subject=a%20b", {"a%40b"}, {}, {}, "a b", ""},
      {"mailto:?subject=s?t", {}, {}, {}, "s?t", ""},
      {"mailto:a@b?attach=/etc/passwd&to=x@y", {"a@b"}, {}, {}, "", ""},
      {"mailto:a@b?subject=x%0D%0ABcc:%20v@w", {"a@b"}, {}, {}, "x  Bcc: v@w", ""},
      {"mailto:", {}, {}, {}, "", ""},
  };
  for (const auto& each : kCases) {
    opener->openEmailComposer(url(each.url));
    const platform::MailMessage& message = mail.messages.back();
    EXPECT_EQ(message.toRecipients, each.to) << each.url;
    EXPECT_EQ(message.ccRecipients, each.cc) << each.url;
    EXPECT_EQ(message.bccRecipients, each.bcc) << each.url;
    EXPECT_EQ(message.subject, each.subject) << each.url;
    EXPECT_EQ(message.body, each.body) << each.url;
  }
  EXPECT_EQ(loader->tracked, std::size(kCases));
  opener.reset();
  mail.answer(platform::MailResult::Done);
}

}  // namespace
}  // namespace valdren
