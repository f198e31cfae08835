// Fires one tracking URL and follows its redirects to their end, showing nothing.
#pragma once

#include <memory>
#include <optional>

#include "ads/support/VADCachedFile.h"
#include "platform/application/Application.h"

namespace valdren {

class VADClickTracker;

/// Told the outcome of a ping, when it wants to be.
class VADClickTrackerDelegate : public virtual platform::WeakTarget {
 public:
  /// The ping has gone through; `url` is where its redirects ended.
  virtual void trackerDidRedirect(VADClickTracker&, const platform::URL& /*url*/) {}
  /// Without an error the server answered with a status other than 200 and 304, or the URL cannot
  /// be fetched.
  virtual void trackerDidFailWithError(VADClickTracker&,
                                       const std::optional<platform::Error>& /*error*/) {}

 protected:
  ~VADClickTrackerDelegate() = default;
};

/// While a ping is under way the tracker holds a background task, which in turn keeps the tracker,
/// so that the ping leaves even when its owner is gone. The outcome is reported once for each
/// `trackURL`; there are no retries. Made with `std::make_shared`. Main thread only.
class VADClickTracker final : public std::enable_shared_from_this<VADClickTracker>,
                              private VADCachedFileDelegate {
 public:
  VADClickTracker() = default;
  ~VADClickTracker();
  VADClickTracker(const VADClickTracker&) = delete;
  VADClickTracker& operator=(const VADClickTracker&) = delete;

  /// Whether a ping is under way that no background task protects.
  static bool activeTrackings();

  VADClickTrackerDelegate* delegate() const { return delegate_.get(); }
  void setDelegate(platform::WeakPtr<VADClickTrackerDelegate> delegate) { delegate_ = delegate; }

  /// Drops the ping under way, then fires this one. None is ignored.
  void trackURL(const std::optional<platform::URL>& url);
  /// Drops the ping under way without a word to the delegate.
  void reset();

  /// Whether the outcome of the current URL has been reported.
  bool hasTracked() const { return hasTracked_; }
  /// Where the redirects have led so far; none before the first ping and after `reset`.
  std::optional<platform::URL> trackingURL() const;

 private:
  void beginBackgroundTask();
  void endBackgroundTask();
  /// The same, unless the delegate has begun to track another URL in the meantime.
  void endBackgroundTask(platform::BackgroundTaskID task);

  void cachedFileDownloadDidEnd(VADCachedFile& file) override;
  void cachedFileDownloadDidFail(VADCachedFile& file,
                                 const std::optional<platform::Error>& error) override;
  std::optional<platform::Error> cachedFileShouldRedirectToURL(VADCachedFile& file,
                                                               const platform::URL& url) override;

  platform::WeakPtr<VADClickTrackerDelegate> delegate_;
  std::shared_ptr<VADCachedFile> tracker_;
  bool hasTracked_ = false;
  platform::BackgroundTaskID backgroundTaskID_ = 0;
};

}  // namespace valdren
