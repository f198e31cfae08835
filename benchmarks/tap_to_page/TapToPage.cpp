// The time from a tap to the first paint of the page in the in-app browser, compared with a bare
// WebKitGTK window; and whether the browser and the web app screen leak memory when they are opened
// and closed repeatedly.
// tools/with_session benchmark_tap_to_page [TAPS [OPENINGS]]
#include <gtkmm/widget.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "ads/screens/VADScreenOpener.h"
#include "ads/screens/VADViewController.h"
#include "ads/valdren.h"
#include "benchmarks/Figures.h"
#include "benchmarks/support/BareView.h"
#include "benchmarks/support/Environment.h"
#include "benchmarks/support/Family.h"
#include "benchmarks/support/LoopWork.h"
#include "benchmarks/support/Pixels.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/Window.h"

namespace platform = valdren::platform;

namespace {

using namespace benchmarks;

constexpr int kDefaultTaps = 20;
constexpr int kDefaultOpenings = 100;
constexpr double kPatience = 30;
constexpr double kPressSeconds = 0.1;
/// The ad is looked at before it is tapped.
constexpr double kBetweenTaps = 4;
constexpr int kWidth = 360;
constexpr int kHeight = 640;
/// The sky of the landing page's picture.
constexpr std::uint32_t kSky = 0x17495a;

class Screen final : public platform::ViewController {
 public:
  bool shouldAutorotateToInterfaceOrientation(platform::InterfaceOrientation) override {
    return true;
  }
};

bool showsPage(GtkWidget* widget) {
  const auto column = pixelsOf(widget, 12, 60, 1, 200);
  return std::find(column.begin(), column.end(), kSky) != column.end();
}

struct Tap {
  double painted = 0;  // milliseconds
  LoopWork work = {};
};

Tap finish(GtkWidget* widget, double began) {
  Tap tap;
  Paint paint(widget, [&] { return showsPage(widget); });
  if (!runUntil([&] { return paint.at() > 0; }, kPatience)) return tap;
  tap.painted = (paint.at() - began) * 1000;
  tap.work = loopWork();
  return tap;
}

/// The application's window with a screen that opens others, like a tapped ad.
class Application final : public valdren::VADBannerViewDelegate {
 public:
  Application() {
    screen_->view()->setBackgroundColor(platform::Color::white());
    window_->setRootViewController(screen_);
    window_->makeKeyAndVisible();
    // A tappable ad, with its own web process.
    banner_->setRootViewController(screen_.get());
    banner_->setDelegate(this);
    screen_->view()->addSubview(banner_);
    banner_->loadRequest(valdren::VADRequest::request());
    if (!runUntil([this] { return received_; }, kPatience)) std::puts("The ad did not come.");
    opener_->setViewController(screen_.get());
    runFor(1);
  }

  /// Touches the ad for as long as a normal tap.
  void press() {
    banner_->hitTest({160, 25}, platform::EventType::Touches);
    runFor(kPressSeconds);
  }
  void openBrowser(const platform::URL& url) { opener_->openBrowserToURL(url, 1); }
  void openWebApp(const platform::URL& url) { opener_->openWebApp(url, 1); }
  bool isOpen() const { return screen_->modalViewController() != nullptr; }
  void close() {
    auto* const modal =
        dynamic_cast<valdren::VADViewController*>(screen_->modalViewController().get());
    if (modal) modal->relinquishScreen();
    runUntil([this] { return !isOpen(); }, kPatience);
  }
  GtkWidget* top() const {
    return GTK_WIDGET(window_->topViewController()->view()->native().widget().gobj());
  }

 private:
  void adViewDidReceiveAd(valdren::VADBannerView&) override { received_ = true; }

  std::shared_ptr<platform::Window> window_ =
      std::make_shared<platform::Window>(platform::Size{kWidth, kHeight});
  std::shared_ptr<Screen> screen_ = std::make_shared<Screen>();
  std::shared_ptr<valdren::VADBannerView> banner_ =
      std::make_shared<valdren::VADBannerView>(platform::Rect{0, 500, 320, 50});
  bool received_ = false;
  std::unique_ptr<valdren::VADOpener> opener_ = valdren::openerWithScreens();
};

Tap tapOurs(Application& application, const platform::URL& url) {
  application.press();
  restartLoopWork();
  const double began = seconds();
  application.openBrowser(url);
  const Tap tap = finish(application.top(), began);
  application.close();
  return tap;
}

/// A new context prevents the reuse of a web process from the previous window.
Tap tapBare(const platform::URL& url, bool newProcess) {
  const platform::GObjectPtr<WebKitWebContext> context(newProcess ? webkit_web_context_new()
                                                                  : nullptr);
  restartLoopWork();
  const double began = seconds();
  GtkWidget* const window = gtk_window_new();
  gtk_window_set_default_size(GTK_WINDOW(window), kWidth, kHeight);
  GtkWidget* const view =
      GTK_WIDGET(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context",
                              context ? context.get() : webkit_web_context_get_default(), nullptr));
  gtk_window_set_child(GTK_WINDOW(window), view);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), url.absoluteString().c_str());
  gtk_window_present(GTK_WINDOW(window));
  const Tap tap = finish(view, began);
  gtk_window_destroy(GTK_WINDOW(window));
  return tap;
}

struct Table {
  Figures painted, processor, stall;
  void add(const Tap& tap) {
    if (tap.painted == 0) return;
    painted.add(tap.painted);
    processor.add(tap.work.processor);
    stall.add(tap.work.longestStall);
  }
  void print(const char* title) const {
    benchmarks::title(title);
    painted.print("  until the page is seen", "ms");
    processor.print("  main thread's own time", "ms");
    stall.print("  longest turn of the main loop", "ms");
  }
};

void setAnimations(bool animated) {
  g_object_set(gtk_settings_get_default(), "gtk-enable-animations", animated, nullptr);
}

void measureTaps(Application& application, const platform::URL& url, int taps) {
  Table sliding;
  Table still;
  Table bare;
  Table bareFresh;
  for (int tap = 0; tap < taps + 1; ++tap) {
    const auto settled = [&](const std::function<Tap()>& measured) {
      runFor(kBetweenTaps);
      return measured();
    };
    setAnimations(false);
    const Tap first = settled([&] { return tapOurs(application, url); });
    const Tap second = settled([&] { return tapBare(url, false); });
    const Tap fresh = settled([&] { return tapBare(url, true); });
    setAnimations(true);
    const Tap third = settled([&] { return tapOurs(application, url); });
    if (tap == 0) continue;
    still.add(first);
    bare.add(second);
    bareFresh.add(fresh);
    sliding.add(third);
  }
  still.print("Tap to page, animations off");
  sliding.print("Tap to page, with the slide");
  bare.print("Bare window, in the web process of the one before");
  bareFresh.print("Bare window, new web process");
  if (bare.painted.median() > 0) {
    std::printf(
        "Beside the bare window: %.2f times, with the slide %.2f; new process: %.2f, %.2f\n\n",
        still.painted.median() / bare.painted.median(),
        sliding.painted.median() / bare.painted.median(),
        still.painted.median() / bareFresh.painted.median(),
        sliding.painted.median() / bareFresh.painted.median());
  }
}

void measureOpenings(Application& application, const char* title, const std::function<void()>& open,
                     int openings) {
  std::printf("%s\n%9s %10s %10s %6s %5s %12s %12s\n", title, "openings", "own MiB", "anonymous",
              "files", "web", "web MiB", "network MiB");
  for (int opening = 0; opening <= openings; ++opening) {
    if (opening > 0) {
      open();
      Paint paint(application.top(), [&] { return showsPage(application.top()); });
      if (!runUntil([&] { return paint.at() > 0; }, 5)) runFor(0.1);
      application.close();
    }
    if (opening != 0 && opening != 1 && opening != 10 && opening % 20 != 0 && opening != openings) {
      continue;
    }
    runFor(3);  // objects that are released after two seconds are gone by then
    const Family now = measureFamily();
    std::printf("%9d %10.1f %10.1f %6d %5d %12.1f %12.1f\n", opening, now.resident, now.anonymous,
                now.files, now.webProcesses, now.webResident, now.helperResident);
    std::fflush(stdout);
  }
  std::puts("");
}

int numberFrom(int argc, char** argv, int place, int otherwise) {
  const int number = argc > place ? std::atoi(argv[place]) : otherwise;
  return number > 0 ? number : otherwise;
}

}  // namespace

int main(int argc, char** argv) {
  const int taps = numberFrom(argc, argv, 1, kDefaultTaps);
  const int openings = numberFrom(argc, argv, 2, kDefaultOpenings);
  setvbuf(stdout, nullptr, _IOLBF, 0);
  const SandboxProcess sandbox;
  const Toolkit toolkit;
  useServer(sandbox.baseURL());
  const auto page = platform::URL::parse(sandbox.baseURL() + "/land/plain?t=bench");
  if (!page) return 1;
  Application application;
  measureTaps(application, *page, taps);
  setAnimations(false);
  measureOpenings(
      application, "In-app browser", [&] { application.openBrowser(*page); }, openings);
  measureOpenings(
      application, "Web app screen", [&] { application.openWebApp(*page); }, openings);
  return 0;
}
