// The baseline: a plain WebKitGTK view and a plain libsoup fetch.
#pragma once

#include <libsoup/soup.h>
#include <webkit/webkit.h>

#include <string>

#include "platform/base/GObjectPtr.h"

namespace platform = valdren::platform;

namespace benchmarks {

/// Placed in `box` (a GtkBox) until it is destroyed.
class BareView {
 public:
  BareView(GtkWidget* box, int width, int height);
  ~BareView();
  BareView(const BareView&) = delete;
  BareView& operator=(const BareView&) = delete;

  GtkWidget* widget() const { return GTK_WIDGET(view_); }
  WebKitWebView* view() const { return view_; }
  /// Fetches the page, then shows its text with its address as the base.
  void fetchAndShow(const std::string& address);
  /// When the last page had finished, by `benchmarks::seconds`; 0 while it loads.
  double finishedAt() const { return finishedAt_; }
  void forget() { finishedAt_ = 0; }

 private:
  GtkWidget* box_;
  WebKitWebView* view_;
  platform::GObjectPtr<SoupSession> session_{soup_session_new()};
  std::string address_;
  double finishedAt_ = 0;
};

}  // namespace benchmarks
