// Points, sizes and rectangles, in points: the toolkit's logical pixels.
#pragma once

namespace valdren::platform {

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  Size size() const { return {width, height}; }
  bool contains(Point point) const {
    return point.x >= x && point.y >= y && point.x < x + width && point.y < y + height;
  }
  bool operator==(const Rect&) const = default;
};

/// Red, green, blue and opacity, each 0 to 1.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 0;

  static constexpr Color clear() { return {0, 0, 0, 0}; }
  static constexpr Color black() { return {0, 0, 0, 1}; }
  static constexpr Color white() { return {1, 1, 1, 1}; }
  bool operator==(const Color&) const = default;
};

}  // namespace valdren::platform
