// What is really on the screen.
#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace benchmarks {

/// The colours (0xRRGGBB) of a part of the widget's window as the display shows it, row by row, in
/// the window's pixels counted from the widget's top left corner; empty when it shows nothing.
std::vector<std::uint32_t> pixelsOf(GtkWidget* widget, int x, int y, int width, int height);

/// Looks at the screen whenever the widget's window has drawn, from its construction until `seen`
/// says yes. The widget must be realized and outlive it.
class Paint {
 public:
  Paint(GtkWidget* widget, std::function<bool()> seen);
  ~Paint();
  Paint(const Paint&) = delete;
  Paint& operator=(const Paint&) = delete;

  /// When it was seen, by `benchmarks::seconds`; 0 before.
  double at() const { return at_; }

 private:
  void look();

  GdkFrameClock* clock_;
  gulong handler_;
  std::function<bool()> seen_;
  double at_ = 0;
};

}  // namespace benchmarks
