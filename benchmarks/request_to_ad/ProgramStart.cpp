#include "benchmarks/request_to_ad/ProgramStart.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <chrono>
#include <cstdio>
#include <optional>
#include <set>
#include <thread>

#include "benchmarks/Figures.h"
#include "benchmarks/support/Child.h"
#include "benchmarks/support/Environment.h"

namespace benchmarks {
namespace {

constexpr double kPatience = 15;
/// An empty banner shows one colour; an ad shows more colours than this.
constexpr std::size_t kColoursOfAnAd = 4;
constexpr int kNarrowestWindow = 200;

struct Start {
  double mapped = 0;
  double drawn = 0;
  double advertised = 0;
};

int ignoreErrors(Display*, XErrorEvent*) {
  return 0;
}

std::optional<Window> mappedWindow(Display* display, XWindowAttributes& attributes) {
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  std::optional<Window> found;
  if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count)) {
    return found;
  }
  for (unsigned place = 0; place < count && !found; ++place) {
    if (XGetWindowAttributes(display, children[place], &attributes) &&
        attributes.map_state == IsViewable && attributes.width > kNarrowestWindow) {
      found = children[place];
    }
  }
  if (children) XFree(children);
  return found;
}

std::size_t coloursIn(Display* display, Window window, int y, int width) {
  XImage* const image =
      XGetImage(display, window, 24, y, unsigned(width - 48), 1, AllPlanes, ZPixmap);
  if (!image) return 0;
  std::set<unsigned long> colours;
  for (int x = 0; x < image->width; ++x) colours.insert(XGetPixel(image, x, 0));
  XDestroyImage(image);
  return colours.size();
}

std::optional<Start> startOnce(Display* display) {
  const quorbel_tests::OwnFolders folders;
  const double began = seconds();
  const pid_t process = startProgram({QUORBEL_PROGRAM});
  Start start;
  while (seconds() - began < kPatience && start.advertised == 0) {
    XWindowAttributes attributes{};
    if (const auto window = mappedWindow(display, attributes)) {
      const double now = (seconds() - began) * 1000;
      if (start.mapped == 0) start.mapped = now;
      // Text means more than one colour: in the title bar, and in the middle of the banner.
      if (start.drawn == 0 && coloursIn(display, *window, 20, attributes.width) > 1) {
        start.drawn = now;
      }
      const int middleOfBanner = attributes.height - 25;
      if (start.drawn > 0 && coloursIn(display, *window, middleOfBanner, 320) >= kColoursOfAnAd) {
        start.advertised = now;
      }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  endWithFamily(process);
  return start.advertised > 0 ? std::optional(start) : std::nullopt;
}

}  // namespace

void measureProgramStart(int starts) {
  Display* const display = XOpenDisplay(nullptr);
  if (!display) return;
  XSetErrorHandler(ignoreErrors);
  Figures drawn;
  Figures advertised;
  Figures between;
  for (int each = 0; each < starts; ++each) {
    const auto start = startOnce(display);
    if (!start) continue;
    drawn.add(start->drawn);
    advertised.add(start->advertised);
    between.add(start->advertised - start->drawn);
  }
  XCloseDisplay(display);
  title("The soundboard, from its start with nothing cached");
  drawn.print("  until its window is drawn", "ms");
  advertised.print("  until the ad is seen", "ms");
  between.print("  between the two", "ms");
}

}  // namespace benchmarks
