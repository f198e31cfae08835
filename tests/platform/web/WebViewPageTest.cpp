// How a web view shows a page and forwards touches.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <gtkmm/window.h>

#include <cmath>

#include "platform/ui/Button.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/NativeWindow.h"
#include "tests/support/Loop.h"
#include "tests/support/Pictures.h"
#include "tests/support/Pointer.h"
#include "tests/support/WebPage.h"

namespace platform = valdren::platform;

namespace {

using namespace quorbel_tests;

/// Records hit tests in its delegate's lines.
struct TouchView : platform::WebView {
  using WebView::WebView;
  platform::View* hitTest(platform::Point point, platform::EventType type) override {
    place = point;
    static_cast<RecordingDelegate*>(delegate())->lines.push_back("touch");
    return WebView::hitTest(point, type);
  }
  platform::Point place;
};

constexpr const char* kWholeLink =
    "<body style='margin:0' onclick='++clicks'><a href='gmsg://h/click' "
    "style='display:block;height:50px'>Ad</a><script>var clicks = 0, keys = '';"
    "onkeydown = (event) => { keys += event.key + ' ' }</script>";

class WebViewPage : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(hasPointer()) << "libXtst and an X display are needed"; }
};

TEST_F(WebViewPage, IsTouchedBeforeThePageIsPressed) {
  const auto view = std::make_shared<TouchView>(platform::Rect{10, 100, 320, 50});
  Page page(view);
  page.show();
  page.load(kWholeLink);
  page.delegate.lines.clear();
  page.click({30, 20});
  EXPECT_TRUE(runUntil([&] { return page.delegate.lines.size() >= 2; }));
  EXPECT_EQ(page.delegate.lines, (std::vector<std::string>{"touch", "ask 0 gmsg://h/click"}));
  EXPECT_NEAR(view->place.x, 30, 1);
  EXPECT_NEAR(view->place.y, 20, 1);

  page.delegate.lines.clear();
  page.click({30, 80});  // below the view
  view->setUserInteractionEnabled(false);
  page.click({30, 20});
  view->setUserInteractionEnabled(true);
  view->setHidden(true);
  page.click({30, 20});
  EXPECT_EQ(page.evaluate("clicks"), "1");
}

TEST_F(WebViewPage, IsTouchedByTheKeyThatFollowsALink) {
  Page page(std::make_shared<TouchView>(platform::Rect{0, 0, 320, 50}));
  page.show();
  page.load(kWholeLink);
  page.view->becomeFirstResponder();
  ASSERT_TRUE(page.becomes("document.hasFocus()", "true"));
  page.delegate.lines.clear();
  GtkWidget* const window = GTK_WIDGET(page.window->native().window().gobj());
  typeKey(window, "a");
  EXPECT_TRUE(page.becomes("keys", "a "));
  EXPECT_EQ(page.delegate.count("touch"), 0);
  // When the page has seen the last one, the engine has sent the others again.
  for (const char* key : {"Return", "b"}) typeKey(window, key);
  EXPECT_TRUE(page.becomes("keys", "a Enter b "));
  EXPECT_EQ(page.delegate.count("touch"), 1);
}

TEST_F(WebViewPage, IsEnteredAndLeftWithTheKeyboard) {
  Page page({0, 50, 320, 100});
  page.show();
  page.load("<a id=one href='a'>1</a> <a id=two href='b'>2</a>");
  const auto above = std::make_shared<platform::Button>(platform::ButtonStyle::Custom,
                                                        platform::Rect{0, 0, 320, 40});
  const auto below = std::make_shared<platform::Button>(platform::ButtonStyle::Custom,
                                                        platform::Rect{0, 200, 320, 40});
  for (const auto& button : {above, below}) page.view->superview()->addSubview(button);
  const auto focused = [&]() -> std::string {
    if (above->isFirstResponder()) return "above";
    if (below->isFirstResponder()) return "below";
    return page.evaluate("document.hasFocus() && (document.activeElement.id || 'page')");
  };
  struct Case {
    const char* with;
    std::vector<std::string> then;
  };
  const Case cases[] = {
      {nullptr, {"page", "one", "two", "below", "above", "page", "one"}},
      {"Shift_L", {"above", "below", "page", "two", "one", "above"}},
      {nullptr, {"page", "one", "two", "below"}},
  };
  // The order goes by where things are.
  ASSERT_TRUE(runUntil([&] { return below->native().widget().get_width() > 0; }));
  above->becomeFirstResponder();
  for (const Case& each : cases) {
    for (const std::string& expected : each.then) {
      typeKey(GTK_WIDGET(page.window->native().window().gobj()), "Tab", each.with);
      EXPECT_TRUE(runUntil([&] { return focused() == expected; }, 2)) << focused();
    }
  }
}

TEST_F(WebViewPage, LetsWhatIsBehindShowThroughAndStaysInItsFrame) {
  Page page({20, 20, 100, 60});
  page.show();
  page.view->superview()->setBackgroundColor({0, 0, 1, 1});
  page.load(
      "<body style='margin:0'><div style='width:500px;height:500px;"
      "background:linear-gradient(90deg,#f00 0 50px,transparent 50px 90px,#f00 90px)'></div>");
  const auto becomes = [&](platform::Point point, unsigned color) {
    return runUntil([&] { return colorAt(*page.window, point) == color; });
  };
  EXPECT_TRUE(becomes({30, 40}, 0xFF0000));
  EXPECT_TRUE(becomes({90, 40}, 0x0000FF)) << "not transparent";
  EXPECT_TRUE(becomes({150, 40}, 0x0000FF)) << "drawn outside of its frame";
  EXPECT_TRUE(becomes({30, 100}, 0x0000FF)) << "drawn outside of its frame";
  page.view->setFrame({20, 20, 200, 60});
  EXPECT_TRUE(becomes({150, 40}, 0xFF0000));
  EXPECT_TRUE(page.becomes("innerWidth", "200"));
}

TEST_F(WebViewPage, HasItsSizeWhileItIsHidden) {
  Page page({0, 0, 320, 50});
  page.view->setHidden(true);
  page.load("<script>var size = innerWidth + 'x' + innerHeight</script>");
  EXPECT_EQ(page.evaluate("size"), "320x50");
  page.view->setFrame({0, 0, 300, 60});
  EXPECT_TRUE(page.becomes("innerWidth + 'x' + innerHeight", "300x60"));
  page.evaluate("var ticks = 0; setInterval(() => ++ticks, 10)");
  EXPECT_TRUE(page.becomes("ticks > 60", "true", 20)) << "its timers stand still";
}

TEST_F(WebViewPage, FitsPagesThatAreTooWide) {
  struct Case {
    bool scales;
    const char* html;
    double width;         // of the layout, in a view of 320 points
    double opened = 320;  // the view's width while the page loads
    double textScale = 1;
  };
  const Case cases[] = {
      {true, "<div style='width:640px;height:10px'></div>", 640},
      {true, "<div style='width:100%;height:10px'></div>", 320},
      {true, "<meta name=viewport content='width=480'>x", 480},
      {true, "<meta name=viewport content='width=device-width'>x", 320},
      {true, "<div style='width:90000px;height:10px'></div>", 320},
      {true, "<div style='width:110vw;height:10px'></div>", 352},
      {false, "<div style='width:640px;height:10px'></div>", 320},
      {true, "<div style='width:100%;height:10px'></div>", 320, 640},
      {true, "<div style='width:500px;height:10px'></div>", 500, 640},
      {true, "<div style='width:640px;height:10px'></div>", 640, 160},
      {true, "<div style='width:100%;height:10px'></div>", 160, 320, 2},
      {true, "<div style='width:300px;height:10px'></div>", 300, 320, 2},
      {false, "<div style='width:100%;height:10px'></div>", 320, 320, 2},
  };
  Page page({0, 0, 320, 200});
  page.show();
  for (const Case& each : cases) {
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", int(each.textScale * 96 * 1024),
                 nullptr);
    page.view->setFrame({0, 0, each.opened, 200});
    page.view->setScalesPageToFit(each.scales);
    page.load("<!doctype html><body style='margin:0'>" + std::string(each.html));
    EXPECT_TRUE(page.becomes("document.readyState", "complete"));
    page.view->setFrame({0, 0, 320, 200});
    const auto width = [&] { return std::atof(page.evaluate("innerWidth").c_str()); };
    EXPECT_TRUE(runUntil([&] { return std::abs(width() - each.width) < 20; }))
        << each.html << ": " << width();
  }
  gtk_settings_reset_property(gtk_settings_get_default(), "gtk-xft-dpi");
}

TEST_F(WebViewPage, TurnsNumbersAndAddressesIntoLinksWhenItIsToldTo) {
  const std::string text =
      "<p>Call +1 (555) 010-0199 or 555-010-0123, not 2024-01-31, 12.5.2024, 192.168.10.20 or "
      "1234567890123.</p><p>Mail a.b+c@mail.example, see www.shop.example/a?b=1, "
      "https://x.example.</p><p><a href='http://own/'>555-010-0100</a></p>"
      "<textarea>555-010-0101</textarea><script>'555-010-0102'</script>";
  const char* kLinks = "Array.from(document.links).map(a => a.getAttribute('href')).join(' ')";
  Page page;
  page.load(text);
  EXPECT_TRUE(page.becomes("document.readyState", "complete"));
  EXPECT_EQ(page.evaluate(kLinks), "http://own/");
  page.view->setDataDetectorTypes(platform::kAllDataDetectors);
  page.load(text);
  EXPECT_TRUE(page.becomes(kLinks,
                           "tel:+15550100199 tel:5550100123 mailto:a.b+c@mail.example "
                           "http://www.shop.example/a?b=1 https://x.example http://own/"))
      << page.evaluate(kLinks);
  EXPECT_EQ(page.evaluate("document.body.innerText").substr(0, 39),
            "Call +1 (555) 010-0199 or 555-010-0123,");
  page.load(
      "<script>for (let i = 0; i < 1500; ++i) document.write("
      "'<p>' + 'a.'.repeat(50) + '@ 555-010-0100</p>')</script>");
  EXPECT_TRUE(page.becomes("document.links.length > 0", "true"));
  EXPECT_EQ(page.evaluate("document.links.length"), "300") << "work without bounds";
}

TEST_F(WebViewPage, PlaysNothingBeforeATouchWhenThatIsAsked) {
  const char* kPlay =
      "var outcome = ''; new Audio('data:audio/wav;base64,UklGRiQAAABXQVZFZm10IBAAAAABAAEAESsAABErA"
      "AABAAgAZGF0YQAAAAA=').play().then(() => outcome = 'plays', e => outcome = e.name)";
  for (const bool asked : {true, false}) {
    Page page;
    page.view->setMediaPlaybackRequiresUserAction(asked);
    page.load("<script>" + std::string(kPlay) + "</script>");
    runUntil([&] { return !page.evaluate("outcome").empty(); }, 3);
    EXPECT_EQ(page.evaluate("outcome") == "NotAllowedError", asked) << page.evaluate("outcome");
  }
}

}  // namespace
