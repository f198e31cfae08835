// Which load of a page is under way, and what is told about it.
#pragma once

#include <string>
#include <string_view>

#include "platform/web/WebView.h"

namespace valdren::platform {

/// Turns the browser engine's events into the client's. A load that was told to have started ends
/// with exactly one "finished" or "failed", unless another load takes its place. A navigation that
/// is refused before it starts is told nothing of. The client may destroy this in each call.
class LoadTracker : public Trackable {
 public:
  explicit LoadTracker(WebEngine::Client& client) : client_(client) {}

  /// From the moment a load is asked for.
  bool isLoading() const { return asked_ || started_; }

  /// The web view was asked to go to `address`, in the engine's own spelling; empty when unknown.
  /// With `mayStay`, it may be a step inside the same document.
  void asked(std::string address, bool mayStay);
  /// Whether that is what the web view was asked to go to and has not begun yet.
  bool awaits(std::string_view address) const;
  /// The navigation was refused before it started.
  void refused(std::string_view address);
  /// The web view was asked to stop.
  void stopped();

  void started();
  void finished();
  /// `cancelled` when it is not known yet whether another load takes this one's place.
  void failed(const Error& error, bool cancelled);
  /// The engine rests. A step inside the same document starts and finishes at once. False when what
  /// was asked for has not started although it was not refused: the page got in its way.
  bool settled();
  /// The web process is gone.
  void crashed(const Error& error);

 private:
  void failUnlessReplaced(double seconds, const Error& error);

  WebEngine::Client& client_;
  std::string address_;
  bool asked_ = false;
  bool mayStay_ = false;
  bool started_ = false;
};

}  // namespace valdren::platform
