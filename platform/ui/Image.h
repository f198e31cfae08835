// A picture that the program carries along.
#pragma once

#include <memory>
#include <string_view>

#include "platform/ui/Geometry.h"

namespace valdren::platform {

class Image {
 public:
  /// The picture in the bytes of a PNG file, drawn for `scale` pixels a point. Screens with fewer
  /// or more pixels a point show it at the same size. Null when the bytes are no whole PNG, are
  /// over 4 MiB, or hold a picture over 2048 pixels wide or high, and for a scale that is not above
  /// 0.
  static std::shared_ptr<Image> fromPNG(std::string_view bytes, double scale);
  ~Image();
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  /// In pixels.
  Size pixelSize() const { return pixelSize_; }
  /// In points.
  Size size() const { return {pixelSize_.width / scale_, pixelSize_.height / scale_}; }

  /// The toolkit's side of the picture; for the platform's own sources.
  struct Native;
  const Native& native() const { return *native_; }

 private:
  Image(std::unique_ptr<Native> native, Size pixelSize, double scale);
  std::unique_ptr<Native> native_;
  Size pixelSize_;
  double scale_;
};

}  // namespace valdren::platform
