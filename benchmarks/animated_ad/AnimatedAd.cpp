// What an animated ad costs in the soundboard, compared with the same page in a bare WebKitGTK view
// that fills its window, with each of the toolkit's renderers. Counted is the processor time of the
// program and of its web processes. The ad network runs in its own process.
// tools/with_session benchmark_animated_ad [ROUNDS]
#include <unistd.h>
#include <webkit/webkit.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "benchmarks/Figures.h"
#include "benchmarks/support/Child.h"
#include "benchmarks/support/Environment.h"

namespace {

using namespace benchmarks;

constexpr int kDefaultRounds = 5;
constexpr unsigned kUntilShown = 6;  // seconds
constexpr unsigned kWatched = 8;     // seconds

/// Fills its window with the page until it is ended.
int showBare(const char* address) {
  const Toolkit toolkit;
  GtkWidget* const window = gtk_window_new();
  GtkWidget* const view = webkit_web_view_new();
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), 320, 50);
  gtk_window_set_child(GTK_WINDOW(window), view);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), address);
  gtk_window_present(GTK_WINDOW(window));
  runUntil([] { return false; }, kUntilShown + kWatched + 60);
  return 0;
}

/// Seconds of a processor that the program and all that it started have used.
double processorTime(pid_t program) {
  double ticks = 0;
  for (const int member : quorbel_tests::processFamily(program)) {
    std::ifstream file("/proc/" + std::to_string(member) + "/stat");
    std::string text;
    std::getline(file, text);
    double user = 0;
    double system = 0;
    // The name, in parentheses, may hold anything.
    const std::size_t end = text.rfind(')');
    if (end != std::string::npos &&
        std::sscanf(text.c_str() + end + 1, " %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %lf %lf",
                    &user, &system) == 2) {
      ticks += user + system;
    }
  }
  return ticks / double(sysconf(_SC_CLK_TCK));
}

/// The share of one core, in percent.
double costOf(const std::vector<std::string>& command) {
  const quorbel_tests::OwnFolders folders;
  const pid_t program = startProgram(command);
  sleep(kUntilShown);
  const double before = processorTime(program);
  sleep(kWatched);
  const double cost = (processorTime(program) - before) / kWatched;
  endWithFamily(program);
  return cost * 100;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2 && std::strcmp(argv[1], "--bare") == 0) return showBare(argv[2]);
  const int rounds = argc > 1 ? std::atoi(argv[1]) : kDefaultRounds;
  const SandboxProcess sandbox;
  sandbox.control("refresh=0&ad=lantern");
  const std::string page = sandbox.baseURL() + "/ad?slotname=ad-lantern";
  for (const char* const renderer : {"cairo", "gl"}) {
    const std::string environment = std::string("GSK_RENDERER=") + renderer;
    Figures bare;
    Figures ours;
    for (int round = 0; round < rounds; ++round) {
      bare.add(costOf({"/usr/bin/env", environment, argv[0], "--bare", page}));
      ours.add(costOf({"/usr/bin/env", environment, QUORBEL_PROGRAM, "--idiom", "phone",
                       "--ad-server", sandbox.baseURL()}));
    }
    title(("An animated ad, renderer \"" + std::string(renderer) + "\"").c_str());
    bare.print("  a bare view in a window of its size", "% core");
    ours.print("  the soundboard", "% core");
    std::printf("Beside the bare view: %.2f times\n\n", ours.median() / bare.median());
  }
}
