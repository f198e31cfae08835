// A picture from the program's resources.
#pragma once

#include <memory>
#include <string_view>

#include "platform/ui/Geometry.h"

namespace valdren::platform {

class Image {
 public:
  /// The picture in the bytes of a PNG file, drawn for `scale` pixels per point. It has the same
  /// size in points on every screen. Null when the bytes are not a complete PNG, are over 4 MiB, or
  /// hold a picture over 2048 pixels wide or high, or when the scale is not above 0.
  static std::shared_ptr<Image> fromPNG(std::string_view bytes, double scale);
  ~Image();
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  /// In pixels.
  Size pixelSize() const { return pixelSize_; }
  /// In points.
  Size size() const { return {pixelSize_.width / scale_, pixelSize_.height / scale_}; }

  /// The toolkit's part; for the platform's own sources.
  struct Native;
  const Native& native() const { return *native_; }

 private:
  Image(std::unique_ptr<Native> native, Size pixelSize, double scale);
  std::unique_ptr<Native> native_;
  Size pixelSize_;
  double scale_;
};

}  // namespace valdren::platform
