// What the opener opens for a page's messages and links, and what it ignores.
#include "ads/web/VADOpener.h"

#include "ads/screens/VADBrowserController.h"
#include "ads/screens/VADScreenOpener.h"
#include "ads/screens/VADWebAppViewController.h"
#include "ads/support/VADNotification.h"
#include "ads/telemetry/VADClickTracker.h"
#include "tests/ads/screens/ScreenTest.h"
#include "tests/ads/web/FakeAdController.h"
#include "tests/ads/web/RecordingOpener.h"

namespace valdren {
namespace {

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
    loader->clickURLs = {url("http://ads.example/click")};
  }
  /// The number of click pings sent.
  std::size_t tracked() const { return tracks.size(); }

  RecordingMailService mail;
  Events tracks;
  std::shared_ptr<quorbel_tests::FakeAdController> loader =
      std::make_shared<quorbel_tests::FakeAdController>(tracks);
  std::unique_ptr<VADOpener> opener = openerWithScreens();
};

TEST_F(VADOpenerTest, OpensWhatTheMessageSays) {
  const std::pair<std::string, std::string> cases[] = {
      {"a=browser&u=http%3A%2F%2Fb%2F", "browser http://b/ 1"},
      {"a=browser&u=http%3A%2F%2Fb%2F&o=l", "browser http://b/ 3"},
      {"a=browser&u=http%3A%2F%2Fb%2F&o=p", "browser http://b/ 2"},
      {"a=browser&u=http%3A%2F%2Fb%2F&o=L", "browser http://b/ 1"},
      {"a=video&u=http%3A%2F%2Fb%2Fv.mp4", "browser http://b/v.mp4 1"},
      {"a=webapp&u=http%3A%2F%2Fb%2F&html=x", "webapp http://b/ 1"},
      {"a=webapp&html=%3Cp%3E&o=l", "html <p> 3"},
      {"a=webapp&u=&html=x", "html x 1"},
      {"a=webapp", ""},
      {"html=x", ""},
      {"a=call&u=tel%3A1", "app tel:1"},
      {"a=app&u=other%3A%2F%2F", "app other://"},
      {"u=http%3A%2F%2Fb%2F", "app http://b/"},
      {"a=browser&u=", ""},
      {"", ""},
      {"a=browser&a=webapp&u=http%3A%2F%2Fa%2F&u=http%3A%2F%2Fb%2F", "webapp http://b/ 1"},
  };
  for (const auto& [query, expected] : cases) {
    statistics().removeTimingNamed(kVADParameterPriorClickLatency);
    Events opened;
    const auto message = VADNotification::notificationFromURL(
        platform::URL::parse("gmsg://x/open?" + query).value_or(url("gmsg://x/open")));
    quorbel_tests::RecordingOpener(opened).openNotification(*message);
    EXPECT_EQ(opened, expected.empty() ? Events{} : Events{expected}) << query;
    EXPECT_EQ(statistics().isTimingClick(), !expected.empty()) << query;
  }
}

TEST_F(VADOpenerTest, HandsItsOwnToTheScreensAndFiresTheClickPings) {
  platform::WebView opening;
  opener->setOpeningWebView(&opening);
  opener->setReferringURL(url("http://ads.example/banner"));
  for (const bool inBrowser : {true, false}) {
    if (inBrowser) opener->openBrowserToURL(url("http://b.example/"), kVADOrientationLandscape);
    if (!inBrowser) opener->openWebAppWithHTML("<p>", kVADOrientationLandscape);
    auto& screen = dynamic_cast<VADViewController&>(*window->topViewController());
    EXPECT_EQ(screen.supportedOrientations(), kVADOrientationLandscape);
    EXPECT_EQ(screen.openingWebView(), &opening);
    EXPECT_EQ(screen.delegateManager(), manager);
    EXPECT_EQ(tracked(), inBrowser ? 1u : 2u);
    screen.relinquishScreen();
  }
  const auto& made = engines.engines();
  EXPECT_EQ(made.at(made.size() - 2)->requests.at(0).headers.at("Referer"),
            "http://ads.example/banner");
  EXPECT_EQ(made.back()->pages.at(0).text, "<p>");
  loop.advance(3);
}

TEST_F(VADOpenerTest, OpensNothingWithoutADestinationOrAScreenToOpenItOver) {
  opener->openApp(std::nullopt);
  for (const bool hasDestination : {false, true}) {
    const auto web = hasDestination ? std::optional(url("http://b/")) : std::nullopt;
    opener->openBrowserToURL(web, 1);
    opener->openWebApp(web, 1);
    opener->openWebAppWithHTML(hasDestination ? std::optional<std::string>("<p>") : std::nullopt,
                               1);
    opener->openEmailComposer(hasDestination ? std::optional(url("mailto:a@b")) : std::nullopt);
    opener->setViewController(nullptr);
  }
  loop.advance(1);
  EXPECT_EQ(window->topViewController(), host.get());
  EXPECT_TRUE(mail.messages.empty());
  EXPECT_TRUE(application.openedURLs.empty());
  EXPECT_EQ(tracked(), 0u);
}

TEST_F(VADOpenerTest, APublisherMayThrowTheAdAwayWhenToldOfIt) {
  record.onEvent = [this](const std::string& event) {
    if (event != "will present") return;
    opener.reset();
    loader.reset();
  };
  opener->openWebApp(url("http://b.example/"), 1);
  EXPECT_NE(window->topViewController(), host.get());
}

TEST_F(VADOpenerTest, GivesPingsUnderWayThreeTurnsToLeaveAndThenOpens) {
  application.grantsBackgroundTasks = false;
  const auto tracker = std::make_shared<VADClickTracker>();
  tracker->trackURL(url("http://ads.example/ping"));
  for (int round = 0; round < 2; ++round) {
    application.openedURLs.clear();
    tracks.clear();
    opener->openApp(url("tel:1"));
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(tracked(), std::size_t(i + 1));
      EXPECT_EQ(record.take(), Events{});
      loop.advance(0.3);
    }
    EXPECT_EQ(tracked(), 4u);
    EXPECT_EQ(record.take(), (Events{"will leave"}));
    loop.advance(0);
    EXPECT_EQ(application.openedURLs, Events{"tel:1"}) << round;
  }

  // At once when the ping is over, even if the banner is gone.
  opener->openApp(url("tel:2"));
  tracker->reset();
  opener.reset();
  loader.reset();
  EXPECT_EQ(application.openedURLs.size(), 1u);
  loop.advance(0.3);
  EXPECT_EQ(application.openedURLs.back(), "tel:2");
  EXPECT_EQ(record.take(), (Events{"will leave"}));
}

TEST_F(VADOpenerTest, FillsAMailInFromItsURL) {
  using Texts = std::vector<std::string>;
  const std::tuple<const char*, Texts, Texts, Texts, const char*, const char*> cases[] = {
      {"mailto:a@b", {"a@b"}, {}, {}, "", ""},
      {"mailto:a@b?cc=c@d,e@f&subject=Hi", {"a@b"}, {"c@d", "e@f"}, {}, "Hi", ""},
      {"MAILTO:a@b?BCC=g@h&body=one%0Atwo", {"a@b"}, {}, {"g@h"}, "", "one\ntwo"},
      {"mailto:a%40b?subject=a%20b", {"a%40b"}, {}, {}, "a b", ""},
      {"mailto:?subject=s?t", {}, {}, {}, "s?t", ""},
      {"mailto:a@b?attach=/etc/passwd&to=x@y", {"a@b"}, {}, {}, "", ""},
      {"mailto:a@b?subject=x%0D%0ABcc:%20v@w", {"a@b"}, {}, {}, "x  Bcc: v@w", ""},
      {"mailto:", {}, {}, {}, "", ""},
  };
  for (const auto& [address, to, cc, bcc, subject, body] : cases) {
    opener->openEmailComposer(url(address));
    const platform::MailMessage& told = mail.messages.back();
    EXPECT_EQ(std::tie(told.toRecipients, told.ccRecipients, told.bccRecipients),
              std::tie(to, cc, bcc))
        << address;
    EXPECT_EQ(told.subject, subject) << address;
    EXPECT_EQ(told.body, body) << address;
  }
  EXPECT_EQ(tracked(), std::size(cases));
  opener.reset();
  mail.answer(platform::MailResult::Done);
}

}  // namespace
}  // namespace valdren
