#include "ads/telemetry/VADClickTracker.h"

#include "ads/support/VADErrorCode.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/MainThread.h"

namespace valdren {
namespace {

/// The pings under way where the system has no background tasks to hold it open for them.
unsigned trackingCount = 0;

}  // namespace

VADClickTracker::~VADClickTracker() {
  platform::assertMainThread();
  invalidateWeakReferences();
  reset();
}

bool VADClickTracker::activeTrackings() {
  return trackingCount != 0;
}

void VADClickTracker::trackURL(const std::optional<platform::URL>& url) {
  platform::assertMainThread();
  if (!url) return;
  const platform::KeptUntilReturn kept(*this);
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the reset may destroy the
  // original.
  const platform::URL copy = *url;
  reset();
  beginBackgroundTask();
  tracker_ = VADCachedFile::initWithDelegate(this, copy);
  const platform::KeptUntilReturn fileKept(*tracker_);
  tracker_->validate();
}

void VADClickTracker::reset() {
  platform::assertMainThread();
  const platform::KeptUntilReturn kept(*this);
  hasTracked_ = false;
  if (const auto file = std::exchange(tracker_, nullptr)) {
    file->setDelegate(nullptr);
    file->invalidate();
  }
  endBackgroundTask();
}

std::optional<platform::URL> VADClickTracker::trackingURL() const {
  if (!tracker_) return std::nullopt;
  return tracker_->httpDestinationURL();
}

void VADClickTracker::beginBackgroundTask() {
  backgroundTaskID_ = platform::Application::shared().beginBackgroundTask(
      [self = shared_from_this()] { self->reset(); });
  if (!backgroundTaskID_) ++trackingCount;
}

void VADClickTracker::endBackgroundTask() {
  // The task may hold the last reference to this tracker, so that nothing follows its end.
  if (const auto task = std::exchange(backgroundTaskID_, 0)) {
    platform::Application::shared().endBackgroundTask(task);
  } else if (trackingCount > 0) {
    --trackingCount;
  }
}

void VADClickTracker::endBackgroundTask(platform::BackgroundTaskID task) {
  if (backgroundTaskID_ == task) endBackgroundTask();
}

void VADClickTracker::cachedFileDownloadDidEnd(VADCachedFile& file) {
  if (hasTracked_) return;
  const platform::KeptUntilReturn kept(*this);
  hasTracked_ = true;
  const platform::BackgroundTaskID task = backgroundTaskID_;
  VADStatistics::sharedStatistics().addClickTrackingURL(file.sourceURL());
  if (auto* delegate = delegate_.get()) {
    delegate->trackerDidRedirect(*this, platform::URL(file.httpDestinationURL()));
  }
  endBackgroundTask(task);
}

void VADClickTracker::cachedFileDownloadDidFail(VADCachedFile&,
                                                const std::optional<platform::Error>& error) {
  if (hasTracked_) return;
  const platform::KeptUntilReturn kept(*this);
  hasTracked_ = true;
  const platform::BackgroundTaskID task = backgroundTaskID_;
  if (auto* delegate = delegate_.get()) delegate->trackerDidFailWithError(*this, error);
  endBackgroundTask(task);
}

std::optional<platform::Error> VADClickTracker::cachedFileShouldRedirectToURL(
    VADCachedFile& file, const platform::URL& url) {
  if (url.lowercaseScheme().starts_with("http")) return std::nullopt;
  const platform::KeptUntilReturn kept(*this);
  // The chain has reached another application's address: the ping has come through.
  cachedFileDownloadDidEnd(file);
  return platform::Error{kVADErrorDomain, 0, ""};
}

}  // namespace valdren
