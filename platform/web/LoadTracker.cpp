#include "platform/web/LoadTracker.h"

#include "platform/RunLoop.h"

namespace platform {
namespace {

/// So long may the next load of a page take to start once the former was cancelled for it.
constexpr double kReplacementSeconds = 0.5;

}  // namespace

void LoadTracker::asked(std::string uri) {
  uri_ = std::move(uri);
  asked_ = true;
}

void LoadTracker::refused(const std::string& uri) {
  if (asked_ && (uri_.empty() || uri_ == uri)) asked_ = false;
}

void LoadTracker::stopped() {
  asked_ = false;
  if (started_) failUnlessReplaced(0, {"platform.web", 302, "The load was stopped."});
}

void LoadTracker::started() {
  RunLoop::shared().cancelPerformRequests(*this);
  asked_ = false;
  started_ = true;
  client_.engineDidStartLoad();
}

void LoadTracker::finished() {
  // The engine reports the end of a failed load, too.
  if (!started_) return;
  started_ = false;
  client_.engineDidFinishLoad();
}

void LoadTracker::failed(const Error& error, bool cancelled) {
  if (!started_) return;
  if (cancelled) return failUnlessReplaced(kReplacementSeconds, error);
  started_ = false;
  client_.engineDidFailLoad(error);
}

void LoadTracker::crashed(const Error& error) {
  RunLoop::shared().cancelPerformRequests(*this);
  asked_ = started_ = false;
  client_.engineDidFailLoad(error);
}

void LoadTracker::failUnlessReplaced(double seconds, const Error& error) {
  started_ = false;
  RunLoop::shared().cancelPerformRequests(*this);
  RunLoop::shared().performAfterDelay(*this, seconds, [this, error] {
    if (!isLoading()) client_.engineDidFailLoad(error);
  });
}

}  // namespace platform
