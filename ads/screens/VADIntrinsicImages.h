// The images of the full-screen screens, so that the client needs no files of its own.
#pragma once

#include <memory>
#include <string_view>

#include "platform/ui/Image.h"

namespace valdren {

/// Each image is made on first use and kept for the rest of the process. Two pixels a point.
class VADIntrinsicImages {
 public:
  static const std::shared_ptr<platform::Image>& closeButton();
  static const std::shared_ptr<platform::Image>& browserForwardButton();
  static const std::shared_ptr<platform::Image>& browserBackButton();

  /// The image in a PNG file written as base64; null when the text holds none.
  static std::shared_ptr<platform::Image> createImageFromEncoding(std::string_view encoding);
};

}  // namespace valdren
