// What a page is denied.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <webkit/webkit.h>

#include <gtkmm/widget.h>
#include <cstdlib>
#include <filesystem>

#include "platform/ui/NativeView.h"

#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/Process.h"
#include "tests/support/WebPage.h"

namespace {

using namespace quorbel_tests;

const std::vector<std::pair<std::string, std::string>> kHTML{{"Content-Type", "text/html"}};

/// Shows pages of a server on this machine.
class WebViewRefusal : public ::testing::Test {
 protected:
  WebViewRefusal() { server.answer("/", 200, kHTML, "<body>"); }

  LoopbackServer server;
  Page page;
};

TEST_F(WebViewRefusal, AnswersEveryDialogAtOnce) {
  server.answer("/private", 401,
                {{"WWW-Authenticate", "Basic realm=\"x\""}, {"Content-Type", "text/html"}},
                "Sign in");
  page.show();
  page.load("<input type=file><input type=color>");
  EXPECT_EQ(page.evaluate("alert('x'); String(confirm('x')) + prompt('x', 'y')"), "falsenull");
  EXPECT_EQ(page.evaluate("print(); document.querySelector('[type=file]').click();"
                          "document.querySelector('[type=color]').click(); 'goes on'"),
            "goes on");
  page.evaluate(
      "var refused = 'waits'; document.body.requestFullscreen ?"
      "document.body.requestFullscreen().catch(() => refused = 'yes') : refused = 'yes'");
  EXPECT_TRUE(page.becomes("refused", "yes"));
  page.evaluate("onbeforeunload = (event) => { event.preventDefault(); return 'Stay?' }");
  EXPECT_TRUE(page.load("next")) << "a page can be left";
  EXPECT_TRUE(page.go(server.address("/private"))) << "nobody is asked for a password";
  EXPECT_EQ(page.evaluate("document.body.innerText"), "Sign in");
}

TEST_F(WebViewRefusal, DeniesPermissions) {
  page.show();
  page.go(server.address("/"));
  page.evaluate(
      "var answers = [];"
      "navigator.geolocation.getCurrentPosition(() => answers.push('place'), e => "
      "answers.push(e.code));"
      "Notification.requestPermission().then(p => answers.push(p));"
      "(navigator.mediaDevices ? navigator.mediaDevices.getUserMedia({audio: true})"
      " : Promise.reject({name: 'none'})).then(() => answers.push('hears'), e => "
      "answers.push('deaf'))");
  EXPECT_TRUE(page.becomes("answers.sort().join()", "1,deaf,denied"));
}

TEST_F(WebViewRefusal, OffersNoMenuThatLeadsAwayAndTakesNoDrops) {
  page.load("<body>");
  GtkWidget* engine = GTK_WIDGET(page.view->native().widget().gobj());
  while (engine && !WEBKIT_IS_WEB_VIEW(engine)) engine = gtk_widget_get_first_child(engine);
  ASSERT_TRUE(engine);
  using Actions = std::vector<WebKitContextMenuAction>;
  const std::pair<Actions, Actions> cases[] = {
      {{WEBKIT_CONTEXT_MENU_ACTION_OPEN_LINK_IN_NEW_WINDOW,
        WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_LINK_TO_DISK,
        WEBKIT_CONTEXT_MENU_ACTION_INSPECT_ELEMENT, WEBKIT_CONTEXT_MENU_ACTION_COPY,
        WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL},
       {WEBKIT_CONTEXT_MENU_ACTION_COPY, WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL}},
      {{WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_IMAGE_TO_DISK}, {}}};
  for (const auto& [offered, expected] : cases) {
    WebKitContextMenu* const menu = webkit_context_menu_new();
    for (const auto action : offered) {
      webkit_context_menu_append(menu, webkit_context_menu_item_new_from_stock_action(action));
    }
    gboolean isRefused = FALSE;
    g_signal_emit_by_name(engine, "context-menu", menu, nullptr, &isRefused);
    Actions kept;
    for (GList* item = webkit_context_menu_get_items(menu); item; item = item->next) {
      kept.push_back(
          webkit_context_menu_item_get_stock_action(WEBKIT_CONTEXT_MENU_ITEM(item->data)));
    }
    EXPECT_EQ(kept, expected);
    EXPECT_EQ(isRefused, expected.empty());
    g_object_unref(menu);
  }
  GListModel* const controllers = gtk_widget_observe_controllers(engine);
  int targets = 0;
  for (guint place = 0; place < g_list_model_get_n_items(controllers); ++place) {
    auto* const each = GTK_EVENT_CONTROLLER(g_list_model_get_item(controllers, place));
    if (GTK_IS_DROP_TARGET(each) || GTK_IS_DROP_TARGET_ASYNC(each)) {
      ++targets;
      EXPECT_EQ(gtk_event_controller_get_propagation_phase(each), GTK_PHASE_NONE);
    }
    g_object_unref(each);
  }
  g_object_unref(controllers);
  EXPECT_GT(targets, 0);
}

TEST_F(WebViewRefusal, KeepsNothingOnTheDisk) {
  server.answer("/", 200,
                {{"Content-Type", "text/html"},
                 {"Cache-Control", "max-age=3600"},
                 {"Set-Cookie", "kept=stranger-marker; Max-Age=3600"}},
                "stranger-marker<script>localStorage.kept = 'stranger-marker';"
                "indexedDB.open('stranger-marker').onsuccess = () => opened = true</script>");
  page.go(server.address("/"));
  EXPECT_EQ(page.evaluate("localStorage.kept"), "stranger-marker");
  EXPECT_TRUE(page.becomes("opened", "true"));
  for (const char* variable :
       {"XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
    std::error_code none;
    const char* const folder = std::getenv(variable);
    ASSERT_TRUE(folder);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, none)) {
      if (!entry.is_regular_file()) continue;
      EXPECT_EQ((entry.path().string() + readFile(entry.path())).find("stranger-marker"),
                std::string::npos)
          << entry.path();
    }
  }
}

TEST_F(WebViewRefusal, BeginsNoDownloads) {
  server.answer("/", 200, kHTML,
                "<a id=save href=/file download=saved.txt>x</a><iframe src=/archive></iframe>");
  server.answer("/file", 200, {{"Content-Type", "text/plain"}}, "saved");
  server.answer("/archive", 200, {{"Content-Type", "application/zip"}}, "PK");
  page.go(server.address("/"));
  page.evaluate("save.click()");
  EXPECT_TRUE(runUntil([&] { return page.delegate.asked(server.address("/file")); }));
  EXPECT_TRUE(page.becomes("document.readyState", "complete"));
  EXPECT_EQ(page.delegate.finishes(), 1);
  for (const char* variable : {"HOME", "XDG_DOCUMENTS_DIR", "XDG_DATA_HOME"}) {
    if (const char* const folder = std::getenv(variable)) {
      EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(folder) / "saved.txt"));
      EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(folder) / "Downloads/saved.txt"));
    }
  }
  EXPECT_EQ(page.evaluate("'still ' + document.links.length"), "still 1");
}

TEST_F(WebViewRefusal, RunsPagesInASandbox) {
  EXPECT_TRUE(runUntil([] { return webProcesses().empty(); })) << "of earlier views";
  page.load("x");
  ASSERT_EQ(webProcesses().size(), 1u);
  const std::string status = readFile("/proc/" + std::to_string(webProcesses()[0]) + "/status");
  EXPECT_THAT(status, testing::ContainsRegex("NSpid:\t[0-9]+\t[0-9]+"))
      << "it sees every process of the machine";
}

TEST_F(WebViewRefusal, KeepsNoProcessOfTheSitesThatItLeft) {
  ASSERT_TRUE(page.go(server.address("/")));
  const int ends = page.ends();
  page.evaluate("location.hostname = 'localhost'");
  ASSERT_TRUE(page.waitForEnd(ends));
  EXPECT_TRUE(runUntil([] { return webProcesses().size() == 1; }));
}

TEST_F(WebViewRefusal, LeavesOutWhatNoAdNeeds) {
  page.go(server.address("/"));
  for (const char* const present :
       {"'serviceWorker' in navigator", "document.createElement('canvas').getContext('webgl')",
        "document.createElement('canvas').getContext('webgl2')"}) {
    EXPECT_EQ(page.evaluate("String(!!(" + std::string(present) + "))"), "false") << present;
  }
  page.evaluate(
      "document.body.innerHTML = '<a id=link href=#x ping=/ping>x</a>'; link.click();"
      "navigator.sendBeacon('/beacon', 'x'); fetch('/asked')");
  EXPECT_TRUE(runUntil([&] {
    return server.requests("/asked").size() == 1 && server.requests("/beacon").size() == 1;
  })) << "what a page sends by script still leaves";
  EXPECT_TRUE(server.requests("/ping").empty());
}

TEST_F(WebViewRefusal, EndsTheProcessThatPagesFill) {
  LogLines log;
  page.go(server.address("/"));
  page.evaluate(
      "kept = []; setInterval(() => kept.push(new Blob([new Uint8Array(16 << 20).fill(1)])), 50)");
  EXPECT_TRUE(runUntil([&] { return !log.lines().empty(); }, 60));
  EXPECT_THAT(log.take(), testing::Contains(testing::HasSubstr("Web pages store too much")));
  EXPECT_TRUE(page.load("next"));
  EXPECT_TRUE(page.go(server.address("/"))) << "the next page has a new process";
}

TEST_F(WebViewRefusal, EndsAPageThatHangsWithoutWaitingForInput) {
  for (const char* const html :
       {"<script>while (true) {}</script>",
        "<script>onload = () => setTimeout(() => { while (true) {} }, 200)</script>"}) {
    SCOPED_TRACE(html);
    Page ad;
    Page builder({0, 0, 1, 1}, ad.view.get());
    builder.view->loadHTMLString(html, std::nullopt);
    EXPECT_TRUE(runUntil([&] { return builder.delegate.fails() && ad.delegate.fails(); }, 60))
        << "each page of the process must hear of its end";
    EXPECT_TRUE(builder.load("next"));
    EXPECT_TRUE(ad.load("next"));
  }
}

}  // namespace
