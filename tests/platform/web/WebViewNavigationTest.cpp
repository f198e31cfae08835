// Which navigations a web view asks about, and what happens to refused ones.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/WebPage.h"

namespace platform = valdren::platform;

namespace {

using namespace quorbel_tests;
using Lines = std::vector<std::string>;

const std::vector<std::pair<std::string, std::string>> kHTML{{"Content-Type", "text/html"}};

TEST(WebViewNavigation, AsksAboutAddressesOfAnyScheme) {
  const std::pair<const char*, const char*> cases[] = {
      {"add('<a href=gmsg://h/click?u=a%20b>').click()", "ask 0 gmsg://h/click?u=a%20b"},
      {"add('<a target=_blank href=vantic://launch?url=x>').click()",
       "ask 0 vantic://launch?url=x"},
      {"add('<a href=tel:+1-555-0100>').click()", "ask 0 tel:+1-555-0100"},
      {"add('<form action=gmsg://h/form><input name=q value=1>').submit()",
       "ask 1 gmsg://h/form?q=1"},
      {"add('<form method=post action=mailto:a@b.example><input name=q value=1>').submit()",
       "ask 1 mailto:a@b.example?body=q%3D1"},
      {"location = 'itms://store/app'", "ask 5 itms://store/app"},
      {"location = 'mailto:a@b.example?subject=x'", "ask 5 mailto:a@b.example?subject=x"},
      {"location = 'gmsg:///'", "ask 5 gmsg:///"},
      {"location = 'gmsg://h/a|b c%zz\\u00e4'", "ask 5 gmsg://h/a%7Cb%20c%25zz%C3%A4"},
      {"location.replace('GMSG://H/x')", "ask 5 gmsg://H/x"},
      {"add('<iframe src=gmsg://h/frame>')", "ask 5 gmsg://h/frame"},
      {"add('<iframe>').contentWindow.location = 'gmsg://h/inner'", "ask 5 gmsg://h/inner"},
      {"window.open('gmsg://h/opened')", "ask 5 gmsg://h/opened"},
  };
  Page page;
  page.load(
      "<body>here<script>function add(html) {"
      "document.body.insertAdjacentHTML('beforeend', html); return document.body.lastElementChild }"
      "</script>");
  page.delegate.lines.clear();
  for (const auto& [script, line] : cases) {
    page.evaluate(script);
    EXPECT_TRUE(runUntil([&, expected = line] { return page.delegate.has(expected); })) << script;
  }
  runFor(0.7);
  EXPECT_EQ(page.delegate.count("start") + page.ends(), 0) << "a refused one is no load";
  EXPECT_EQ(page.evaluate("document.body.innerText.trim().slice(0, 4)"), "here");
}

TEST(WebViewNavigation, AsksAboutEachHopOfAPage) {
  LoopbackServer server;
  server.redirect("/store", "itms://store/app");
  server.redirect("/message", "gmsg://h/redirected");
  Page page;
  page.load("before<iframe src='" + server.address("/message") + "'></iframe>");
  EXPECT_TRUE(runUntil([&] { return page.delegate.asked("gmsg://h/redirected"); }));
  EXPECT_EQ(page.delegate.finishes(), 1);
  EXPECT_FALSE(page.go(server.address("/store"))) << "what had started ends";
  EXPECT_TRUE(page.delegate.asked("itms://store/app"));
  EXPECT_EQ(page.delegate.fails(), 1);
  EXPECT_FALSE(page.view->isLoading());
  EXPECT_EQ(page.evaluate("document.body.innerText"), "before");
}

TEST(WebViewNavigation, MessagesOfAPageThatStillLoadsDoNotDisturbIt) {
  LoopbackServer server;
  server.answer("/late.png", {200, {{"Content-Type", "image/png"}}, "none", 0.5});
  Page page;
  EXPECT_TRUE(page.load("<img src='" + server.address("/late.png") +
                        "'><script>location = 'gmsg://h/first';"
                        "setTimeout(() => { location = 'gmsg://h/second' }, 50)</script>"));
  EXPECT_EQ(page.delegate.lines, (Lines{"ask 5 about:blank", "start", "ask 5 gmsg://h/first",
                                        "ask 5 gmsg://h/second", "finish"}));
}

TEST(WebViewNavigation, OpensNewWindowsInPlace) {
  LoopbackServer server;
  server.answer("/new", 200, kHTML, "new");
  Page page;
  for (const char* script : {"window.open('/new')", "document.querySelector('a').click()"}) {
    page.load("<a href=/new target=_blank>x</a>", server.address("/"));
    page.delegate.lines.clear();
    EXPECT_EQ(page.evaluate(std::string(script) + "; 'done'"), "done");
    EXPECT_TRUE(page.waitForEnd(0));
    EXPECT_EQ(page.evaluate("document.body.innerText"), "new");
    EXPECT_THAT(page.delegate.lines, testing::SizeIs(3)) << "asked once";
  }
  page.load("<a href=/new target=_blank>x</a>", server.address("/"));
  page.delegate.decide = [](const platform::URLRequest&, platform::NavigationType) {
    return false;
  };
  page.evaluate("window.open('/new'); fetch('/after')");
  EXPECT_TRUE(runUntil([&] { return server.requests("/after").size() == 1; }));
  EXPECT_EQ(server.requests("/new").size(), 2u);
}

TEST(WebViewNavigation, LoadsNothingButWebPagesWhateverItsDelegateSays) {
  Page page;
  {
    RecordingDelegate gone;
    page.view->setDelegate(&gone);
  }
  page.view->loadHTMLString("here", std::nullopt);
  EXPECT_TRUE(page.becomes("document.body.innerText", "here")) << "also without a delegate";
  page.view->setDelegate(&page.delegate);
  page.delegate.decide = [](const platform::URLRequest&, platform::NavigationType) { return true; };
  for (const char* address : {"file:///etc/passwd", "gmsg://h/x", "tel:1", "ftp://127.0.0.1/"}) {
    page.view->loadRequest({*platform::URL::parse(address)});
    runUntil([&] { return !page.view->isLoading(); });
    page.evaluate("location = '" + std::string(address) + "'");
    page.evaluate("document.body.appendChild(document.createElement('iframe')).src = '" +
                  std::string(address) + "'");
  }
  runFor(0.5);
  EXPECT_EQ(page.delegate.finishes(), 0);
  EXPECT_EQ(page.evaluate("document.body.innerText.trim()"), "here");
  page.view->loadHTMLString("<img src='file:///etc/passwd'>", platform::URL::parse("file:///etc/"));
  page.waitForEnd(page.ends());
  EXPECT_EQ(page.evaluate("document.baseURI"), "about:blank") << "a page with the rights of a file";
}

TEST(WebViewNavigation, RefusesLongMessagesWithOneLineAndLongPagesNot) {
  Page page;
  page.load("<body>");
  page.evaluate(R"(
    function send(address) {
      const f = document.createElement('iframe');
      f.src = address;
      document.body.appendChild(f);
    }
    function sized(begin, size) { return begin + 'a'.repeat(size - begin.length) })");
  const LogLines log;
  page.delegate.requests.clear();
  page.evaluate("for (const size of [65536, 65537, 1e6]) send(sized('gmsg://h/', size))");
  page.evaluate("send(sized('data:text/html,', 1e6)); send('gmsg://h/last')");
  EXPECT_TRUE(runUntil([&] { return page.delegate.asked("gmsg://h/last"); }));
  EXPECT_THAT(page.delegate.addressesOf("gmsg"),
              testing::ElementsAre(testing::SizeIs(65536), "gmsg://h/last"));
  EXPECT_THAT(page.delegate.addressesOf("data"), testing::ElementsAre(testing::SizeIs(1000000)));
  EXPECT_EQ(log.lines().size(), 1u);
}

TEST(WebViewNavigation, OutlastsFloods) {
  struct Case {
    const char* script;
    bool ends;  // whether the page's process is ended
  };
  const Case cases[] = {
      {"setInterval(() => { for (let i = 0; i < 200; ++i) location = 'gmsg://h/' + i }, 0)", false},
      {"setInterval(() => { for (let i = 0; i < 50; ++i) {"
       "  const f = document.createElement('iframe'); f.src = 'gmsg://h/' + i;"
       "  document.body.appendChild(f); f.remove() } }, 0)",
       true},
      {"const long = 'gmsg://h/?' + 'a'.repeat(2e6); setInterval(() => {"
       "  const f = document.createElement('iframe'); f.src = long;"
       "  document.body.appendChild(f); setTimeout(() => f.remove(), 100) }, 10)",
       true},
      {"location = 'gmsg://h/?' + 'a'.repeat(1e7)", true},
      {"while (true) window.open('gmsg://h/')", true},
      {"while (true) alert(1)", true},
  };
  for (const Case& each : cases) {
    Page page;
    page.load("<body>");
    page.view->stringByEvaluatingJavaScriptFromString(each.script);
    if (each.ends) {
      EXPECT_TRUE(runUntil([&] { return page.delegate.fails() == 1; }, 30)) << each.script;
    } else {
      runFor(1);
    }
    const auto asked = page.delegate.requests.size();
    EXPECT_LT(asked, 8000u) << each.script;
    EXPECT_TRUE(page.load("next<script>location = 'gmsg://h/next'</script>")) << each.script;
    EXPECT_TRUE(runUntil([&] { return page.delegate.asked("gmsg://h/next"); }, 10))
        << "the next page pays for " << each.script;
    EXPECT_EQ(page.evaluate("document.body.innerText"), "next");
  }
}

}  // namespace
