#include "ads/screens/VADIntrinsicImages.h"

#include "ads/screens/IntrinsicImageData.h"
#include "ads/support/VAD_VTMStringEncoding.h"

namespace valdren {
namespace {

constexpr double kPixelsAPoint = 2;

}  // namespace

const std::shared_ptr<platform::Image>& VADIntrinsicImages::closeButton() {
  static const auto* const image = new std::shared_ptr(createImageFromEncoding(kCloseButtonPNG));
  return *image;
}

const std::shared_ptr<platform::Image>& VADIntrinsicImages::browserForwardButton() {
  static const auto* const image =
      new std::shared_ptr(createImageFromEncoding(kBrowserForwardButtonPNG));
  return *image;
}

const std::shared_ptr<platform::Image>& VADIntrinsicImages::browserBackButton() {
  static const auto* const image =
      new std::shared_ptr(createImageFromEncoding(kBrowserBackButtonPNG));
  return *image;
}

std::shared_ptr<platform::Image> VADIntrinsicImages::createImageFromEncoding(
    std::string_view encoding) {
  const auto bytes = VAD_VTMStringEncoding::rfc4648Base64StringEncoding()->decode(encoding);
  return bytes ? platform::Image::fromPNG(*bytes, kPixelsAPoint) : nullptr;
}

}  // namespace valdren
