// Which load of a page is under way, and what is told about it.
#pragma once

#include <string>

#include "platform/WebView.h"

namespace platform {

/// Turns the web engine's events into the client's: a load that was told to have started ends with
/// exactly one "finished" or "failed", unless another load takes its place. A navigation that was
/// refused before it started is told nothing of.
class LoadTracker : public Trackable {
 public:
  explicit LoadTracker(WebEngine::Client& client) : client_(client) {}

  /// From the moment a load is asked for.
  bool isLoading() const { return asked_ || started_; }

  /// The web view was asked to go to `uri` (in the engine's own spelling; empty when unknown).
  void asked(std::string uri);
  /// A navigation to `uri` was refused before it started.
  void refused(const std::string& uri);
  void stopped();

  void started();
  void finished();
  /// `cancelled` when it is not known yet whether another load takes this one's place.
  void failed(const Error& error, bool cancelled);
  /// The web process is gone.
  void crashed(const Error& error);

 private:
  void failUnlessReplaced(double seconds, const Error& error);

  WebEngine::Client& client_;
  std::string uri_;
  bool asked_ = false;
  bool started_ = false;
};

}  // namespace platform
