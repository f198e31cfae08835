// The cost of hostile pages: for each, the longest stall of the main loop, the peak memory of the
// program, its web processes and its network process, and whether the next ad was shown. The first
// row is an idle page, which shows the machine's noise.
// tools/with_session benchmark_hostile_pages [NAME...]
#include <gtk/gtk.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ads/valdren.h"
#include "ads/web/VADScreen.h"
#include "benchmarks/Figures.h"
#include "benchmarks/hostile_pages/HostileNetwork.h"
#include "benchmarks/hostile_pages/Peaks.h"
#include "benchmarks/support/Environment.h"
#include "benchmarks/support/LoopWork.h"
#include "platform/base/RunLoop.h"

namespace platform = valdren::platform;

namespace {

using namespace benchmarks;

/// Covers the first ad, the attack, the client's deadline and one refresh interval.
constexpr double kPatience = 180;
constexpr platform::Seconds kSecondsToClose{2};

class Count final : public valdren::VADBannerViewDelegate {
 public:
  void adViewDidReceiveAd(valdren::VADBannerView&) override { ++received; }
  void adViewDidFailToReceiveAdWithError(valdren::VADBannerView&,
                                         const valdren::VADRequestError&) override {
    ++failed;
  }
  int received = 0;
  int failed = 0;
};

/// Closes each screen that covers the banner. The refresh waits for that.
class Person {
 public:
  explicit Person(platform::ViewController& host) : host_(&host) { wait(); }

 private:
  void wait() {
    next_ = platform::RunLoop::shared().scheduleTimer(kSecondsToClose, [this] {
      wait();
      closeScreen();
    });
  }
  void closeScreen() {
    const std::shared_ptr<platform::ViewController> shown =
        host_ ? host_->modalViewController() : nullptr;
    if (auto* const screen = dynamic_cast<valdren::VADScreen*>(shown.get())) {
      screen->relinquishScreen();
    }
  }

  platform::WeakPtr<platform::ViewController> host_;
  std::unique_ptr<platform::Timer> next_;
};

/// A banner in a window.
class Scene {
 public:
  Scene() {
    gtk_window_set_default_size(GTK_WINDOW(window_), 360, 200);
    platform::ViewController* const host = platform::hostScreen(GTK_WINDOW(window_));
    person_.emplace(*host);
    banner_->setRootViewController(host);
    banner_->setDelegate(&count);
    gtk_window_set_child(GTK_WINDOW(window_), platform::hostWidget(banner_));
    gtk_window_present(GTK_WINDOW(window_));
  }
  ~Scene() { gtk_window_destroy(GTK_WINDOW(window_)); }
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  void load() { banner_->loadRequest(valdren::VADRequest::request()); }
  Count count;

 private:
  GtkWidget* window_ = gtk_window_new();
  std::shared_ptr<valdren::VADBannerView> banner_ =
      std::make_shared<valdren::VADBannerView>(platform::Rect{0, 0, 320, 50});
  std::optional<Person> person_;
};

void print(const Attack& attack, const Peaks& peaks, const std::string& next, int failed) {
  const LoopWork work = loopWork();
  const Peaks::Memory peak = peaks.peak();
  std::printf("%-28s %9.0f %9.0f %8.0f %8.0f %8.0f %6d   %s\n", attack.name, work.longestStall,
              work.longestProcessor, peak.own, peak.web, peak.network, failed, next.c_str());
  std::fflush(stdout);
}

void run(const Attack& attack, HostileNetwork& network, Peaks& peaks) {
  network.begin(attack);
  useServer(network.address());
  Scene scene;
  scene.load();
  if (!runUntil([&] { return scene.count.received > 0; }, kPatience)) {
    return print(attack, peaks, "not even the first ad came", scene.count.failed);
  }
  restartLoopWork();
  peaks.restart();
  runUntil([&] { return network.turn() >= 2; }, kPatience);
  const double began = seconds();
  runUntil([&] { return network.turn() >= 3; }, kPatience);
  const int before = scene.count.received;
  const bool came =
      network.turn() >= 3 && runUntil([&] { return scene.count.received > before; }, kPatience);
  char after[50];
  std::snprintf(after, sizeof after, "after %.0f s", seconds() - began);
  print(attack, peaks, came ? after : "NEVER", scene.count.failed);
}

bool isAsked(const Attack& attack, const std::vector<std::string>& names) {
  return names.empty() || std::find(names.begin(), names.end(), attack.name) != names.end();
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> names(argv + 1, argv + argc);
  const Toolkit toolkit;
  HostileNetwork network;
  Peaks peaks;
  std::printf("%-28s %9s %9s %8s %8s %8s %6s   %s\n", "", "stall ms", "own work", "own MiB",
              "web MiB", "net MiB", "errors", "next ad");
  for (const Attack& attack : attacks()) {
    if (isAsked(attack, names)) run(attack, network, peaks);
  }
  return 0;
}
