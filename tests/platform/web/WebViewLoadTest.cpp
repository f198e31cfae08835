// The load callbacks of a web view, with the real engine.
#include <gtest/gtest.h>

#include <csignal>

#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/WebPage.h"

namespace platform = valdren::platform;

namespace {

using namespace quorbel_tests;
using platform::URL;
using Lines = std::vector<std::string>;
using Headers = std::vector<std::pair<std::string, std::string>>;

const Headers kHTML{{"Content-Type", "text/html"}};

TEST(WebViewLoad, PageInAProcessStartedAheadKnowsNothingOfWhatWasBefore) {
  platform::WebView::prepareNext();
  runFor(0.5);
  Page page;
  EXPECT_TRUE(page.load("<p>Hello", "http://ads.example/"));
  EXPECT_EQ(page.evaluate("document.body.textContent"), "Hello");
  EXPECT_EQ(page.delegate.lines, (Lines{"ask 5 http://ads.example/", "start", "finish"}));
  EXPECT_EQ(page.evaluate("String(history.length)"), "1");
  EXPECT_FALSE(page.view->canGoBack());
  platform::WebView::prepareNext();
  Page next;
  EXPECT_TRUE(next.load("<p>Again", "http://ads.example/")) << "its process may not be there yet";
  const std::size_t before = webProcesses().size();
  platform::WebView::keepNext(true);
  EXPECT_TRUE(runUntil([&] { return webProcesses().size() == before + 1; }));
  platform::WebView::keepNext(false);
  EXPECT_TRUE(runUntil([&] { return webProcesses().size() == before; }));
}

TEST(WebViewLoad, TellsOfEachLoadOnce) {
  LoopbackServer server;
  server.answer("/page", 200, kHTML, "<title>Title</title>Text");
  server.answer("/missing", 404, kHTML, "Not here");
  server.redirect("/moved", "/page");
  Page page;
  const std::string to = server.address("/page");

  page.view->loadHTMLString("<p>Hello", std::nullopt);
  EXPECT_TRUE(page.view->isLoading()) << "from the call on";
  EXPECT_TRUE(page.waitForEnd(0));
  EXPECT_FALSE(page.view->isLoading());
  EXPECT_EQ(page.view->currentURL(), URL::parse("about:blank"));
  EXPECT_TRUE(page.load("", "http://ads.example/dir/"));
  EXPECT_EQ(page.evaluate("document.baseURI"), "http://ads.example/dir/");
  EXPECT_EQ(page.view->shownURL(), URL::parse("http://ads.example/dir/"));
  EXPECT_TRUE(page.go(to));
  EXPECT_TRUE(runUntil([&] { return page.view->title() == "Title"; }));
  EXPECT_TRUE(page.go(server.address("/missing")));
  EXPECT_TRUE(page.go(server.address("/moved")));
  EXPECT_EQ(page.view->currentURL(), URL::parse(to));
  EXPECT_FALSE(page.view->isSecure());
  EXPECT_TRUE(page.go(to + "#part")) << "a step inside the document ends, too";
  EXPECT_FALSE(page.view->isLoading());
  runFor(0.3);
  EXPECT_EQ(page.delegate.lines,
            (Lines{"ask 5 about:blank", "start", "finish",                                 //
                   "ask 5 http://ads.example/dir/", "start", "finish",                     //
                   "ask 5 " + to, "start", "finish",                                       //
                   "ask 5 " + server.address("/missing"), "start", "finish",               //
                   "ask 5 " + server.address("/moved"), "start", "ask 5 " + to, "finish",  //
                   "ask 5 " + to + "#part", "start", "finish"}));
}

TEST(WebViewLoad, FailsOnceWhenTheNetworkDoesAndThenGoesOn) {
  LoopbackServer server;
  server.answer("/cut", {200, kHTML, "", 0, "nonsense", LoopbackResponse::Ending::Cut});
  server.answer("/archive", 200, {{"Content-Type", "application/zip"}}, "PK");
  server.answer("/saved", 200,
                {{"Content-Type", "text/html"}, {"Content-Disposition", "attachment"}}, "x");
  LoopbackServer unverified(LoopbackServer::Security::SelfSigned);
  unverified.answer("/", 200, kHTML, "secret");
  const std::string closed = [] { return LoopbackServer().address("/"); }();

  Page page;
  page.load("before");
  for (const std::string& address :
       {closed, server.address("/cut"), server.address("/archive"), server.address("/saved"),
        unverified.address("/"), std::string("http://name.invalid/")}) {
    page.delegate.lines.clear();
    EXPECT_FALSE(page.go(address)) << address;
    runFor(0.2);
    EXPECT_EQ(page.delegate.lines, (Lines{"ask 5 " + address, "start", "fail"}));
    EXPECT_FALSE(page.view->isLoading());
    EXPECT_FALSE(page.delegate.lastError.message.empty());
    EXPECT_EQ(page.view->shownURL(), URL::parse("about:blank"));
    EXPECT_EQ(page.evaluate("document.body.innerText"), "before") << "no page about the failure";
  }
  EXPECT_TRUE(page.load("after"));
}

TEST(WebViewLoad, SupersededAndStoppedLoads) {
  LoopbackServer server;
  server.answer("/slow", {200, kHTML, "slow", 2});
  server.answer("/quick", 200, kHTML, "quick");
  Page page;
  page.load("first");
  page.delegate.lines.clear();

  page.view->loadRequest({server.url("/slow")});
  runUntil([&] { return page.delegate.has("start"); });
  EXPECT_EQ(page.view->currentURL(), server.url("/slow"));
  EXPECT_EQ(page.view->shownURL(), URL::parse("about:blank"));
  EXPECT_TRUE(page.go(server.address("/quick")));
  EXPECT_EQ(page.view->shownURL(), server.url("/quick"));
  runFor(0.8);
  EXPECT_EQ(page.delegate.fails(), 0);
  EXPECT_EQ(page.delegate.finishes(), 1);

  page.view->loadRequest({server.url("/slow")});
  runUntil([&] { return page.delegate.count("start") == 3; });
  page.view->stopLoading();
  EXPECT_FALSE(page.view->isLoading());
  EXPECT_EQ(page.delegate.fails(), 0) << "not while it is asked to stop";
  EXPECT_TRUE(runUntil([&] { return page.delegate.fails() == 1; }));

  page.view->loadHTMLString("one", std::nullopt);
  page.view->loadHTMLString("two", std::nullopt);
  page.view->stopLoading();
  EXPECT_TRUE(runUntil([&] { return page.ends() == 2; }));
  EXPECT_FALSE(page.view->isLoading());
}

TEST(WebViewLoad, SendsItsHeadersGoesBackAndForwardAndReloads) {
  LoopbackServer server;
  server.answer("/one", 200, kHTML, "<a id=link href=/two>two</a>");
  server.answer("/two", 200, kHTML, "two");
  Page page;
  platform::URLRequest request{server.url("/one")};
  request.headers["Referer"] = "http://publisher.example/page?a=1";
  page.view->loadRequest(request);
  ASSERT_TRUE(page.waitForEnd(0));
  const platform::Headers sent = server.requests("/one").at(0).headers;
  EXPECT_EQ(sent.at("Referer"), "http://publisher.example/page?a=1");
  EXPECT_EQ(sent.at("User-Agent"), page.view->engine().userAgent());
  EXPECT_EQ(page.delegate.requests[0].headers.at("User-Agent"), page.view->engine().userAgent());
  EXPECT_FALSE(page.view->canGoBack());
  int ends = page.ends();
  page.evaluate("link.click()");
  EXPECT_TRUE(page.waitForEnd(ends));
  EXPECT_TRUE(page.view->canGoBack());
  page.delegate.lines.clear();
  page.view->goBack();
  EXPECT_TRUE(page.waitForEnd(0));
  EXPECT_TRUE(page.view->canGoForward());
  page.view->goForward();
  EXPECT_TRUE(page.waitForEnd(1));
  page.view->goForward();  // there is no next page
  page.view->reload();
  EXPECT_TRUE(page.waitForEnd(2));
  EXPECT_EQ(page.delegate.lines, (Lines{"ask 2 " + server.address("/one"), "start", "finish",
                                        "ask 2 " + server.address("/two"), "start", "finish",
                                        "ask 3 " + server.address("/two"), "start", "finish"}));
  page.evaluate("history.pushState(1, '', '/pushed')");
  ends = page.ends();
  page.view->goBack();
  EXPECT_TRUE(page.waitForEnd(ends));
  EXPECT_FALSE(page.view->isLoading());
}

TEST(WebViewLoad, EvaluatesScripts) {
  Page page;
  page.load("<p>Hello");
  const std::pair<const char*, const char*> cases[] = {
      {"1 + 1", "2"},
      {"'text'", "text"},
      {"true", "true"},
      {"null", ""},
      {"undefined", ""},
      {"throw new Error('x')", ""},
      {"syntax error(", ""},
      {"document.body", ""},
      {"'\\u00e4\\u{1F600}'", "ä😀"},
      {"[1, 2]", "1,2"},
      {"''", ""},
  };
  for (const auto& [script, result] : cases) EXPECT_EQ(page.evaluate(script), result) << script;
}

TEST(WebViewLoad, OutlivesItsWebProcess) {
  LoopbackServer server;
  server.answer("/slow", {200, kHTML, "slow", 3});
  EXPECT_TRUE(runUntil([] { return webProcesses().empty(); })) << "of earlier views";
  Page page;
  page.load("before");
  page.view->loadRequest({server.url("/slow")});
  runUntil([&] { return page.delegate.count("start") == 2; });
  ASSERT_EQ(webProcesses().size(), 1u);
  kill(webProcesses()[0], SIGKILL);
  EXPECT_TRUE(runUntil([&] { return page.delegate.fails() > 0; }));
  runFor(0.5);
  EXPECT_EQ(page.delegate.fails(), 1);
  EXPECT_FALSE(page.view->isLoading());
  EXPECT_EQ(page.evaluate("1"), "");
  EXPECT_TRUE(page.load("after"));
  EXPECT_EQ(page.evaluate("document.body.innerText"), "after");
}

TEST(WebViewLoad, MayBeDestroyedInEachOfItsCalls) {
  const std::string closed = [] { return LoopbackServer().address("/"); }();
  struct Case {
    std::string last;
    std::string html;  // empty for an address without a server
    int of = 1;        // the occurrence of the line at which the view is destroyed
  };
  const std::string message = "<iframe src='gmsg://h/message'></iframe>";
  const std::string step = "<script>onload = () => setTimeout(() => open('#step'), 100)</script>";
  for (const Case& each :
       {Case{"ask 5 " + closed, ""}, Case{"start", message}, Case{"finish", message},
        Case{"fail", ""}, Case{"ask 5 gmsg://h/message", message},
        Case{"ask 5 about:blank#step", step}, Case{"start", step, 2}, Case{"finish", step, 2}}) {
    SCOPED_TRACE(each.last + " " + each.html);
    Page page;
    page.delegate.during = [&](const std::string& line) {
      if (line == each.last && page.delegate.count(line) == each.of) page.view.reset();
    };
    bool evaluated = false;
    if (each.html.empty()) {
      page.view->loadRequest({*URL::parse(closed)});
    } else {
      page.view->loadHTMLString(each.html, std::nullopt);
    }
    page.view->stringByEvaluatingJavaScriptFromString(
        "new Promise(() => {})", [&](const std::string&) { evaluated = true; });
    EXPECT_TRUE(runUntil([&] { return !page.view; }));
    const Lines told = page.delegate.lines;
    const bool before = evaluated;
    runFor(0.3);
    EXPECT_EQ(page.delegate.lines, told) << "told after its end";
    EXPECT_EQ(evaluated, before);
  }
}

TEST(WebViewLoad, RelatedViewsShareOneProcessAndNoneIsLeft) {
  EXPECT_TRUE(runUntil([] { return webProcesses().empty(); }));
  LoopbackServer server;
  server.answer("/page", 200,
                {{"Content-Type", "text/html"}, {"Cross-Origin-Opener-Policy", "same-origin"}},
                "page");
  {
    Page ad;
    Page builder({0, 0, 1, 1}, ad.view.get());
    builder.view->setHidden(true);
    builder.load("script", server.address("/"));
    ad.load("ad", "http://ads.example/");
    ad.go(server.address("/page"));
    ad.load("ad", "http://other.example/");
    EXPECT_EQ(webProcesses().size(), 1u) << "a process for each site";
    Page unrelated;
    unrelated.load("landing");
    EXPECT_EQ(webProcesses().size(), 2u);
    ad.view.reset();
    EXPECT_EQ(builder.evaluate("'still there'"), "still there");
  }
  for (int count = 0; count < 5; ++count) {
    Page().load("x");
    Page().go(server.address("/page"));
  }
  EXPECT_TRUE(runUntil([] { return webProcesses().empty(); })) << webProcesses().size();
}

}  // namespace
