// Whether a refreshing banner leaks: memory, open files and web processes after many refreshes with
// the ad network, which runs in its own process.
// tools/with_session benchmark_soak [REFRESHES]
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>

#include "ads/valdren.h"
#include "benchmarks/Figures.h"
#include "benchmarks/support/Environment.h"
#include "benchmarks/support/Family.h"

namespace platform = valdren::platform;

namespace {

using namespace benchmarks;

constexpr int kDefaultRefreshes = 10000;
constexpr double kPatience = 60;  // seconds for one refresh

class Count final : public valdren::VADBannerViewDelegate {
 public:
  void adViewDidReceiveAd(valdren::VADBannerView&) override { ++received; }
  void adViewDidFailToReceiveAdWithError(valdren::VADBannerView&,
                                         const valdren::VADRequestError&) override {
    ++failed;
  }
  int answers() const { return received + failed; }

  int received = 0;
  int failed = 0;
};

void printRow(int refreshes, double perRefresh) {
  const Family now = measureFamily();
  std::printf("%9d %10.1f %10.1f %6d %5d %12.1f %12.1f %10.1f\n", refreshes, now.resident,
              now.anonymous, now.files, now.webProcesses, now.webResident, now.helperResident,
              perRefresh * 1000);
  std::fflush(stdout);
}

int soak(int refreshes) {
  const Toolkit toolkit;
  const SandboxProcess sandbox;
  sandbox.control("refresh=0");  // the next ad follows at once, without a timer
  useServer(sandbox.baseURL());

  GtkWidget* const window = gtk_window_new();
  gtk_window_set_default_size(GTK_WINDOW(window), 360, 200);
  const auto banner = std::make_shared<valdren::VADBannerView>(platform::Rect{0, 0, 320, 50});
  Count count;
  banner->setRootViewController(platform::hostScreen(GTK_WINDOW(window)));
  banner->setDelegate(&count);
  gtk_window_set_child(GTK_WINDOW(window), platform::hostWidget(banner));
  gtk_window_present(GTK_WINDOW(window));

  std::printf("%9s %10s %10s %6s %5s %12s %12s %10s\n", "refreshes", "own MiB", "anonymous",
              "files", "web", "web MiB", "network MiB", "ms each");
  printRow(0, 0);
  double began = seconds();
  int before = 0;
  for (int done = 1; done <= refreshes; ++done) {
    banner->loadRequest(valdren::VADRequest::request());
    if (!runUntil([&] { return count.answers() >= done; }, kPatience)) {
      std::printf("Nothing has come for %.0f seconds, after %d.\n", kPatience, count.received);
      break;
    }
    if (done == 10 || done == 100 || done == 300 || done % 1000 == 0 || done == refreshes) {
      printRow(done, (seconds() - began) / (done - before));
      began = seconds();
      before = done;
    }
  }
  std::printf("%d ads, %d errors\n", count.received, count.failed);
  gtk_window_destroy(GTK_WINDOW(window));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const int refreshes = argc > 1 ? std::atoi(argv[1]) : kDefaultRefreshes;
  return soak(refreshes > 0 ? refreshes : kDefaultRefreshes);
}
