// The pixels on the screen.
#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace benchmarks {

/// The colours (0xRRGGBB) of a part of the widget's window on the display, row by row, in window
/// pixels from the widget's top left corner; empty when it is not shown.
std::vector<std::uint32_t> pixelsOf(GtkWidget* widget, int x, int y, int width, int height);

/// Checks the screen after each drawing of the widget's window, until `seen` returns true. The
/// widget must be realized and outlive this object.
class Paint {
 public:
  Paint(GtkWidget* widget, std::function<bool()> seen);
  ~Paint();
  Paint(const Paint&) = delete;
  Paint& operator=(const Paint&) = delete;

  /// The time when it was seen, on `benchmarks::seconds`; 0 before.
  double at() const { return at_; }

 private:
  void look();

  GdkFrameClock* clock_;
  gulong handler_;
  std::function<bool()> seen_;
  double at_ = 0;
};

}  // namespace benchmarks
