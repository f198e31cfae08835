// Tracks the load of a page and reports it.
#pragma once

#include <string>
#include <string_view>

#include "platform/base/Seconds.h"
#include "platform/web/WebView.h"

namespace valdren::platform {

/// Turns the engine's events into the client's. Each reported start is followed by exactly one
/// "finished" or "failed", unless another load replaces it. A navigation that is refused before it
/// starts is not reported. The client may destroy this object in each call.
class LoadTracker : public WeakTarget {
 public:
  explicit LoadTracker(WebEngine::Client& client) : client_(client) {}

  /// True from the request of a load on.
  bool isLoading() const { return asked_ || started_; }

  /// A load of `address` was requested, in the engine's own spelling; empty when unknown. With
  /// `mayStay` it may be a step inside the same document.
  void asked(std::string address, bool mayStay);
  /// Whether this address was requested and has not started yet.
  bool awaits(std::string_view address) const;
  /// The navigation was refused before it started.
  void refused(std::string_view address);
  /// A stop was requested.
  void stopped();

  void started();
  void finished();
  /// `cancelled` when another load may replace this one.
  void failed(const Error& error, bool cancelled);
  /// The engine is idle. A step inside the same document starts and finishes at once. False when
  /// the requested load has not started although it was not refused: the page interfered.
  bool settled();
  /// The web process has ended.
  void crashed(const Error& error);

 private:
  void failUnlessReplaced(Seconds delay, const Error& error);

  WebEngine::Client& client_;
  std::string address_;
  bool asked_ = false;
  bool mayStay_ = false;
  bool started_ = false;
};

}  // namespace valdren::platform
