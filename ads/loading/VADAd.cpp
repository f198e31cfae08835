#include "ads/loading/VADAd.h"

#include "ads/loading/VADReloadTimer.h"
#include "ads/loading/VADResponseHeaders.h"
#include "ads/screens/VADViewController.h"
#include "platform/base/MainThread.h"

namespace valdren {

void VADAd::fetch(const platform::URL& url, platform::WeakPtr<VADCachedFileDelegate> delegate) {
  platform::assertMainThread();
  drop();
  file_ = VADCachedFile::initWithDelegate(delegate, url);
  const auto startedHere = file_;
  startedHere->validate();
}

void VADAd::drop() {
  platform::assertMainThread();
  trackingURLs_.clear();
  clickURLs_.clear();
  const auto dropped = std::exchange(file_, nullptr);
  if (!dropped) return;
  dropped->setDelegate(nullptr);
  dropped->invalidate();
}

void VADAd::processHTTPHeaders(const platform::Headers& headers) {
  appendURLsFromHeader(trackingURLs_, headers, kVADHeaderTrackingURLs);
  appendURLsFromHeader(clickURLs_, headers, kVADHeaderClickTrackingURLs);
  const VADOrientationCode code = VADViewController::orientationFromString(
      nonEmptyHeader(headers, kVADHeaderOrientation).value_or(""));
  if (code != kVADOrientationUnknown) supportedOrientations_ = code;
  storeInterstitialTimeout(headers);
}

std::optional<std::string> VADAd::content() const {
  return file_ ? file_->content() : std::nullopt;
}

std::optional<platform::URL> VADAd::baseURL() const {
  if (!file_) return std::nullopt;
  return file_->httpDestinationURL();
}

std::optional<double> VADAd::refreshSeconds() const {
  if (!file_) return std::nullopt;
  const auto rate = nonEmptyHeader(file_->httpHeaders(), kVADHeaderRefreshRate);
  if (!rate) return std::nullopt;
  return VADReloadTimer::secondsFromHeader(*rate);
}

}  // namespace valdren
