// The soundboard's time from exec to its first window and its first frame, and its memory then,
// compared with a bare gtkmm window, and with one that has a banner, in the same run. Needs an X
// display: tools/with_session benchmark_start_time [ROUNDS]
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/Figures.h"
#include "benchmarks/support/Child.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(20);
constexpr auto kUntilSettled = std::chrono::seconds(3);

struct Start {
  double mapped = 0;        // milliseconds from exec to the window on the screen
  double drawn = 0;         // milliseconds from exec to a window that shows something
  double processor = 0;     // milliseconds of a processor that the process has used by then
  double residentThen = 0;  // MiB of the process then
  double resident = 0;      // MiB of the process when it has settled
  double proportional = 0;  // MiB of it and its helpers, shared pages counted by their share
};

struct Program {
  const char* name;
  std::vector<std::string> command;
  std::vector<Start> starts = {};

  void print() const {
    benchmarks::title(name);
    print("  mapped", "ms", &Start::mapped);
    print("  drawn", "ms", &Start::drawn);
    print("  processor until drawn", "ms", &Start::processor);
    print("  resident when drawn", "MiB", &Start::residentThen);
    print("  resident when settled", "MiB", &Start::resident);
    print("  with helpers, settled", "MiB", &Start::proportional);
  }

 private:
  void print(const char* what, const char* unit, double Start::*figure) const {
    benchmarks::Figures figures;
    for (const Start& start : starts) figures.add(start.*figure);
    figures.print(what, unit);
  }
};

double millisecondsSince(Clock::time_point begun) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begun).count();
}

/// The first child of the root window that is mapped and larger than a toolkit's helper window.
std::optional<Window> mappedWindow(Display* display) {
  Window root;
  Window parent;
  Window* children = nullptr;
  unsigned count = 0;
  std::optional<Window> found;
  if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count)) {
    return found;
  }
  for (unsigned place = 0; place < count && !found; ++place) {
    XWindowAttributes attributes;
    if (XGetWindowAttributes(display, children[place], &attributes) &&
        attributes.map_state == IsViewable && attributes.width > 100) {
      found = children[place];
    }
  }
  if (children) XFree(children);
  return found;
}

/// Whether the window has more than one colour in its title bar.
bool isDrawn(Display* display, Window window) {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(display, window, &attributes)) return false;
  XImage* const image =
      XGetImage(display, window, 0, 0, static_cast<unsigned>(attributes.width),
                static_cast<unsigned>(std::min(attributes.height, 60)), AllPlanes, ZPixmap);
  if (!image) return false;
  const unsigned long first = XGetPixel(image, image->width / 4, image->height / 2);
  bool several = false;
  for (int y = 10; y < image->height && !several; ++y) {
    for (int x = 20; x < image->width - 20 && !several; ++x) {
      several = XGetPixel(image, x, y) != first;
    }
  }
  XDestroyImage(image);
  return several;
}

double mebibytesIn(const std::string& path, const std::string& key) {
  std::ifstream file(path);
  for (std::string word; file >> word;) {
    double kibibytes = 0;
    if (word == key && file >> kibibytes) return kibibytes / 1024;
  }
  return 0;
}

/// Milliseconds of a processor that the threads of the process have used.
double processorTime(pid_t process) {
  clockid_t clock{};
  timespec time{};
  if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0) return 0;
  return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

std::optional<Start> startOnce(Display* display, const std::vector<std::string>& command) {
  const auto begun = Clock::now();
  const pid_t process = benchmarks::startProgram(command);
  Start start;
  std::optional<Window> window;
  while (Clock::now() - begun < kPatience && start.drawn == 0) {
    if (!window && (window = mappedWindow(display))) start.mapped = millisecondsSince(begun);
    if (window && isDrawn(display, *window)) {
      start.drawn = millisecondsSince(begun);
      start.processor = processorTime(process);
      start.residentThen = mebibytesIn("/proc/" + std::to_string(process) + "/status", "VmRSS:");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  std::this_thread::sleep_for(kUntilSettled);
  start.resident = mebibytesIn("/proc/" + std::to_string(process) + "/status", "VmRSS:");
  for (const int member : quorbel_tests::processFamily(process)) {
    start.proportional += mebibytesIn("/proc/" + std::to_string(member) + "/smaps_rollup", "Pss:");
  }
  benchmarks::endWithFamily(process);
  while (mappedWindow(display)) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  if (start.drawn == 0) return std::nullopt;
  return start;
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;
  Display* const display = XOpenDisplay(nullptr);
  if (!display) {
    std::fputs("There is no X display; run this with tools/with_session.\n", stderr);
    return 1;
  }
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // windows may be destroyed meanwhile
  Program programs[] = {
      {"bare gtkmm window", {BARE_WINDOW_PROGRAM}},
      {"the same without OpenGL", {"/usr/bin/env", "GSK_RENDERER=cairo", BARE_WINDOW_PROGRAM}},
      {"the first, a banner", {BANNER_WINDOW_PROGRAM}},
      {"quorbel, phone", {QUORBEL_PROGRAM, "--idiom", "phone"}},
      {"quorbel, tablet", {QUORBEL_PROGRAM, "--idiom", "tablet"}},
  };
  for (int round = 0; round <= rounds; ++round) {
    for (Program& program : programs) {
      const std::optional<Start> start = startOnce(display, program.command);
      if (!start) {
        std::fprintf(stderr, "%s: no window within the time.\n", program.name);
        return 1;
      }
      if (round > 0) program.starts.push_back(*start);  // the first round warms the file cache
    }
  }
  for (const Program& program : programs) program.print();
  XCloseDisplay(display);
}
