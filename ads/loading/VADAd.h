// One ad after another: its file, and what the ad server's headers ask for.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ads/support/VADCachedFile.h"
#include "ads/web/VADScreen.h"

namespace valdren {

/// Without an ad at first. Main thread only.
class VADAd {
 public:
  VADAd() = default;
  ~VADAd() { drop(); }
  VADAd(const VADAd&) = delete;
  VADAd& operator=(const VADAd&) = delete;

  /// Drops the present ad and fetches another one; the delegate is told how that ends, perhaps at
  /// once.
  void fetch(const platform::URL& url, platform::WeakPtr<VADCachedFileDelegate> delegate);
  /// Forgets the ad and deletes its file; a fetch under way ends, and the delegate is not told.
  void drop();
  /// Takes in what an answer's headers ask for: those of each redirect, and of the ad itself.
  void processHTTPHeaders(const platform::Headers& headers);

  /// None without an ad, or when it is no text.
  std::optional<std::string> content() const;
  /// The URL that the ad came from, after all redirects; none without an ad.
  std::optional<platform::URL> baseURL() const;
  /// After how many seconds its answer wants the next ad; none when it does not say.
  std::optional<double> refreshSeconds() const;
  /// The impression pings.
  const std::vector<platform::URL>& trackingURLs() const { return trackingURLs_; }
  const std::vector<platform::URL>& clickURLs() const { return clickURLs_; }
  /// A `VADOrientationCode` for the screens that the ad opens; the last that a server has named.
  int supportedOrientations() const { return supportedOrientations_; }

 private:
  std::shared_ptr<VADCachedFile> file_;
  std::vector<platform::URL> trackingURLs_;
  std::vector<platform::URL> clickURLs_;
  int supportedOrientations_ = kVADOrientationAny;
};

}  // namespace valdren
