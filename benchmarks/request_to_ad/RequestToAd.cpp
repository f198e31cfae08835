// The time from an ad request to `adViewDidReceiveAd` and until the ad is visible, its cost on the
// main thread, and the time until the soundboard shows its first ad. The floor, from the same run,
// is the same page fetched with plain libsoup and shown in a bare WebKitGTK view. The ad network
// runs in its own process.
// tools/with_session benchmark_request_to_ad [ROUNDS [warm]]
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ads/loading/VADAdURLBuilder.h"
#include "ads/protocol/Messages.h"
#include "ads/protocol/Parameters.h"
#include "ads/protocol/Script.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/valdren.h"
#include "benchmarks/Figures.h"
#include "benchmarks/request_to_ad/ProgramStart.h"
#include "benchmarks/support/BareView.h"
#include "benchmarks/support/Environment.h"
#include "benchmarks/support/HttpClient.h"
#include "benchmarks/support/LoopWork.h"
#include "benchmarks/support/Pixels.h"

namespace platform = valdren::platform;

namespace {

using namespace benchmarks;

constexpr int kDefaultRounds = 40;
constexpr int kStarts = 5;
constexpr double kPatience = 30;
constexpr double kPause = 0.15;  // between rounds, so that pings of one round do not slow the next
constexpr int kWidth = 320;
constexpr int kHeight = 50;

// Two static ads with different backgrounds: the new colour shows that the new ad was painted.
constexpr const char* kUnits[] = {"ad-browser", "ad-video"};

struct Round {
  double told = 0;     // milliseconds until the page was reported
  double painted = 0;  // milliseconds until it was visible
  LoopWork work = {};
};

/// The background of the ad near its left edge.
std::vector<std::uint32_t> ground(GtkWidget* widget) {
  return pixelsOf(widget, 3, 10, 2, 20);
}

class Window {
 public:
  Window() {
    gtk_window_set_default_size(window(), 360, 240);
    gtk_window_set_child(window(), box_);
    gtk_window_present(window());
    runFor(0.5);
  }
  ~Window() { gtk_window_destroy(window()); }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  GtkWindow* window() const { return GTK_WINDOW(window_); }
  GtkWidget* box() const { return box_; }

 private:
  GtkWidget* window_ = gtk_window_new();
  GtkWidget* box_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 20);
};

/// The final look of each ad. A view may be blank for a moment between two pages.
std::map<std::pair<GtkWidget*, std::string>, std::vector<std::uint32_t>> grounds;

/// Waits for both ends of a round. Records the ad's look if it was never seen in this view.
Round finish(GtkWidget* widget, const char* unit, double began,
             const std::vector<std::uint32_t>& before, const std::function<double()>& told) {
  Round round;
  auto& known = grounds[{widget, unit}];
  Paint paint(widget, [&] {
    const auto now = ground(widget);
    return known.empty() ? !now.empty() && now != before : now == known;
  });
  if (!runUntil([&] { return told() > 0; }, kPatience)) return round;
  round.work = loopWork();
  if (!runUntil([&] { return paint.at() > 0; }, kPatience)) return round;
  round.told = (told() - began) * 1000;
  round.painted = (paint.at() - began) * 1000;
  if (known.empty()) {
    runFor(0.5);
    known = ground(widget);
  }
  return round;
}

class Banner final : public valdren::VADBannerViewDelegate {
 public:
  explicit Banner(const Window& window)
      : view_(std::make_shared<valdren::VADBannerView>(platform::Rect{0, 0, kWidth, kHeight})) {
    view_->setRootViewController(platform::hostScreen(window.window()));
    view_->setDelegate(this);
    widget_ = platform::hostWidget(view_);
    gtk_box_prepend(GTK_BOX(window.box()), widget_);
  }
  ~Banner() { invalidateWeakReferences(); }

  Round show(const char* unit, double began) {
    // The host's widget is wider than the banner, which is centred.
    GtkWidget* const banner = gtk_widget_get_first_child(widget_);
    const auto before = ground(banner);
    told_ = 0;
    view_->setAdUnitID(unit);
    view_->loadRequest(valdren::VADRequest::request());
    return finish(banner, unit, began, before, [this] { return told_; });
  }

 private:
  void adViewDidReceiveAd(valdren::VADBannerView&) override { told_ = seconds(); }
  void adViewDidFailToReceiveAdWithError(valdren::VADBannerView&,
                                         const valdren::VADRequestError&) override {
    std::puts("The ad did not come.");
    std::exit(1);
  }

  std::shared_ptr<valdren::VADBannerView> view_;
  GtkWidget* widget_ = nullptr;
  double told_ = 0;
};

Round showBare(BareView& bare, const std::string& base, const char* unit, double began) {
  const auto before = ground(bare.widget());
  bare.fetchAndShow(base + "/ad?slotname=" + unit);
  return finish(bare.widget(), unit, began, before, [&] { return bare.finishedAt(); });
}

/// Shows the first ad of a new process.
int firstOnce(bool ours, const std::string& base) {
  const Toolkit toolkit;
  useServer(base);
  const Window window;
  restartLoopWork();
  const double began = seconds();
  Round round;
  if (ours) {
    Banner banner(window);
    round = banner.show(kUnits[0], began);
  } else {
    BareView bare(window.box(), kWidth, kHeight);
    round = showBare(bare, base, kUnits[0], began);
  }
  std::printf("%f %f %f %f %f\n", round.told, round.painted, round.work.processor,
              round.work.longestStall, round.work.longestProcessor);
  return 0;
}

std::optional<Round> firstInItsOwnProcess(const char* program, bool ours, const std::string& base) {
  Round round;
  const std::string output =
      quorbel_tests::run(std::string(program) + (ours ? " --first-ad " : " --first-floor ") + base)
          .output;
  const int read =
      std::sscanf(output.c_str(), "%lf %lf %lf %lf %lf", &round.told, &round.painted,
                  &round.work.processor, &round.work.longestStall, &round.work.longestProcessor);
  return read == 5 && round.painted > 0 ? std::optional(round) : std::nullopt;
}

/// All steps of an ad with bare parts: a hidden page runs the script, and its answer tells what to
/// fetch and show.
class BareRoad {
 public:
  BareRoad(BareView& shown, const std::string& base)
      : shown_(shown), base_(base), script_(get(base + std::string(valdren::kVADScriptPath))) {}
  ~BareRoad() { drop(); }
  BareRoad(const BareRoad&) = delete;
  BareRoad& operator=(const BareRoad&) = delete;

  Round show(const char* unit, double began) {
    drop();
    const std::string page =
        valdren::VADAdURLBuilder::pageWithScript(script_, {{valdren::kVADParameterSlotName, unit}});
    const auto before = ground(shown_.widget());
    shown_.forget();
    builder_ =
        WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", shown_.view(), nullptr));
    g_object_ref_sink(builder_);
    g_signal_connect(builder_, "decide-policy", G_CALLBACK(decided), this);
    webkit_web_view_load_html(builder_, page.c_str(), base_.c_str());
    return finish(shown_.widget(), unit, began, before, [&] { return shown_.finishedAt(); });
  }

 private:
  static gboolean decided(WebKitWebView*, WebKitPolicyDecision* decision,
                          WebKitPolicyDecisionType type, gpointer self) {
    if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) return FALSE;
    auto* const action = webkit_navigation_policy_decision_get_navigation_action(
        WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    const auto url = platform::URL::fromPage(
        webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)));
    if (!url || url->lowercaseScheme() != valdren::kVADMessageScheme) return FALSE;
    webkit_policy_decision_ignore(decision);
    const auto ad = valdren::VADNetworkUtilities::parameterValueForKey("url", *url);
    auto& road = *static_cast<BareRoad*>(self);
    char* const address = ad ? g_uri_unescape_string(ad->c_str(), nullptr) : nullptr;
    if (address) road.shown_.fetchAndShow(address);
    g_free(address);
    g_idle_add_once([](gpointer self) { static_cast<BareRoad*>(self)->drop(); }, self);
    return TRUE;
  }

  void drop() {
    if (!builder_) return;
    g_signal_handlers_disconnect_by_data(builder_, this);
    g_object_unref(std::exchange(builder_, nullptr));
  }

  BareView& shown_;
  std::string base_;
  std::string script_;
  WebKitWebView* builder_ = nullptr;
};

struct Table {
  Figures told, painted, processor, stall, stallProcessor;

  void add(const Round& round) {
    if (round.painted == 0) return;
    told.add(round.told);
    painted.add(round.painted);
    processor.add(round.work.processor);
    stall.add(round.work.longestStall);
    stallProcessor.add(round.work.longestProcessor);
  }
  void print(const char* title) const {
    benchmarks::title(title);
    told.print("  until told of it", "ms");
    painted.print("  until seen", "ms");
    processor.print("  main thread's own time until told", "ms");
    stall.print("  longest turn of the main loop", "ms");
    stallProcessor.print("  the same by the thread's own time", "ms");
  }
};

void printRatio(const Table& ours, const Table& floor) {
  if (floor.painted.median() <= 0) return;
  std::printf("Beside the floor: seen %.2f, told %.2f times; main thread %+.2f ms\n\n",
              ours.painted.median() / floor.painted.median(),
              ours.told.median() / floor.told.median(),
              ours.processor.median() - floor.processor.median());
}

void measureFirst(const char* program, const std::string& base) {
  Table ours;
  Table floor;
  for (int start = 0; start < kStarts; ++start) {
    if (const auto round = firstInItsOwnProcess(program, true, base)) ours.add(*round);
    if (const auto round = firstInItsOwnProcess(program, false, base)) floor.add(*round);
  }
  ours.print("First ad: nothing cached, no web process");
  floor.print("First page, bare");
  printRatio(ours, floor);
}

void measureWarm(const std::string& base, int rounds) {
  const Toolkit toolkit;
  useServer(base);
  const Window window;
  Banner banner(window);
  BareView bare(window.box(), kWidth, kHeight);
  BareRoad bareRoad(bare, base);
  Table ours;
  Table road;
  Table floor;
  for (int round = 0; round < rounds + 3; ++round) {
    const char* const unit = kUnits[round % 2];
    const auto measured = [&](const std::function<Round(double)>& show) {
      runFor(kPause);
      restartLoopWork();
      return show(seconds());
    };
    const Round ad = measured([&](double began) { return banner.show(unit, began); });
    const Round page = measured([&](double began) { return showBare(bare, base, unit, began); });
    const char* const other = kUnits[(round + 1) % 2];
    const Round whole = measured([&](double began) { return bareRoad.show(other, began); });
    // Back to the other background.
    measured([&](double began) { return showBare(bare, base, unit, began); });
    if (round < 3) continue;
    ours.add(ad);
    floor.add(page);
    road.add(whole);
  }
  ours.print("Warm ad");
  road.print("The same road, bare: script in a hidden page, fetch, page");
  floor.print("Warm page, bare");
  printRatio(ours, floor);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2 && std::strncmp(argv[1], "--first-", 8) == 0) {
    return firstOnce(std::strcmp(argv[1], "--first-ad") == 0, argv[2]);
  }
  const bool warmOnly = argc > 2 && std::strcmp(argv[2], "warm") == 0;
  const int rounds = argc > 1 ? std::atoi(argv[1]) : kDefaultRounds;
  setvbuf(stdout, nullptr, _IOLBF, 0);
  const SandboxProcess sandbox;
  sandbox.control("refresh=0");
  // Before this process opens windows, which could be mistaken for the soundboard's.
  if (!warmOnly) {
    measureProgramStart(kStarts);
    measureFirst(argv[0], sandbox.baseURL());
  }
  measureWarm(sandbox.baseURL(), rounds > 0 ? rounds : kDefaultRounds);
  return 0;
}
