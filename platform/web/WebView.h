// A web page inside the application.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/base/Shared.h"
#include "platform/net/URLConnection.h"
#include "platform/ui/View.h"

namespace valdren::platform {

enum class NavigationType : int {
  LinkClicked = 0,
  FormSubmitted = 1,
  BackForward = 2,
  Reload = 3,
  FormResubmitted = 4,
  Other = 5,
};

enum DataDetectorTypes : unsigned { kNoDataDetectors = 0, kAllDataDetectors = ~0u };

class WebView;

/// Decides on a web view's navigations and receives its loads. Only the decision must be
/// implemented. Each reported start is followed by one "finished" or "failed", unless another load
/// replaces it; a navigation that is refused before it starts is not reported. The end of the
/// page's process is reported as "failed", with or without a load, unless the delegate overrides
/// this. The view may be destroyed in each call.
class WebViewDelegate : public virtual WeakTarget {
 public:
  /// Whether to allow the navigation (main frame or subframe).
  virtual bool webViewShouldStartLoad(WebView&, const URLRequest& request, NavigationType type) = 0;
  virtual void webViewDidStartLoad(WebView&) {}
  virtual void webViewDidFinishLoad(WebView&) {}
  virtual void webViewDidFailLoad(WebView&, const Error&) {}
  /// The page's process has ended, and the page is gone.
  virtual void webViewProcessDidEnd(WebView& view, const Error& error) {
    webViewDidFailLoad(view, error);
  }
  virtual void webViewDidChangeTitle(WebView&) {}

 protected:
  ~WebViewDelegate() = default;
};

/// The engine of one web view; tests replace it.
class WebEngine {
 public:
  /// Receives the engine's questions and events.
  class Client {
   public:
    virtual bool engineShouldStartLoad(const URLRequest& request, NavigationType type) = 0;
    virtual void engineDidStartLoad() = 0;
    virtual void engineDidFinishLoad() = 0;
    virtual void engineDidFailLoad(const Error& error) = 0;
    virtual void engineProcessDidEnd(const Error& error) { engineDidFailLoad(error); }
    virtual void engineDidChangeTitle() {}

   protected:
    ~Client() = default;
  };

  struct Settings {
    bool scalesPageToFit = false;
    bool allowsInlineMediaPlayback = false;
    bool mediaPlaybackRequiresUserAction = true;
    bool allowsAirPlay = false;
    unsigned dataDetectorTypes = kNoDataDetectors;
  };

  virtual ~WebEngine() = default;
  virtual void apply(const Settings& settings) = 0;
  /// The host's size has changed.
  virtual void boundsChanged() {}
  virtual void loadRequest(const URLRequest& request) = 0;
  virtual void loadHTML(const std::string& html, const std::optional<URL>& baseURL) = 0;
  virtual void evaluate(const std::string& script, std::function<void(std::string)> result) = 0;
  virtual void reload() = 0;
  virtual void stopLoading() = 0;
  virtual void goBack() = 0;
  virtual void goForward() = 0;
  virtual bool canGoBack() const = 0;
  virtual bool canGoForward() const = 0;
  virtual bool isLoading() const = 0;
  virtual std::optional<URL> currentURL() const = 0;
  virtual std::optional<URL> shownURL() const = 0;
  virtual std::string title() const = 0;
  virtual bool isSecure() const = 0;
  /// The engine's own user agent text; empty until the engine is loaded.
  virtual std::string userAgent() const = 0;
};

/// Makes engines.
class WebEngines : public Shared<WebEngines> {
 public:
  static WebEngines& standard();
  virtual ~WebEngines() = default;
  /// An engine that draws into `host` and reports to `client`; both outlive it. With `related` it
  /// shares that engine's web process.
  virtual std::unique_ptr<WebEngine> makeEngine(View& host, WebEngine::Client& client,
                                                WebEngine* related) = 0;
  /// Prepares the next engine without a `related` one, which will be made soon.
  virtual void prepare() {}
  /// See `WebView::keepNext`.
  virtual void keepPrepared(bool /*kept*/) {}
};

/// Pages are separate from the user's own browsing: nothing of them outlives the process, and they
/// get no permissions, downloads, files or windows.
class WebView : public View, private WebEngine::Client {
 public:
  /// With `related`, shares that view's web process, which saves the start of one.
  explicit WebView(const Rect& frame = {}, WebView* related = nullptr);
  ~WebView() override;

  /// Call this shortly before a view without `related` is made. It starts the web process, which
  /// ends if it is not used within some seconds.
  static void prepareNext() { WebEngines::shared().prepare(); }
  /// Starts that process and keeps it until a view takes it; or, with false, ends it. Nothing is
  /// kept on a machine that is short of memory.
  static void keepNext(bool kept) { WebEngines::shared().keepPrepared(kept); }

  void setDelegate(WeakPtr<WebViewDelegate> delegate) { delegate_ = delegate; }
  WebViewDelegate* delegate() const { return delegate_.get(); }

  void loadRequest(const URLRequest& request);
  /// Shows `html` as the page at `baseURL` (about:blank when absent).
  void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL);
  /// Requests the page's address again. A page that was given as text is not reloaded.
  void reload();
  /// A started load then fails on the next turn of the run loop.
  void stopLoading();
  void goBack();
  void goForward();
  bool canGoBack() const;
  bool canGoForward() const;
  bool isLoading() const;
  /// The address of the page that is shown or being loaded.
  std::optional<URL> currentURL() const;
  /// The address of the present page, whose scripts run, even while another one is loading. None
  /// before the first page and after the end of its process.
  std::optional<URL> shownURL() const;
  std::string title() const;
  /// Whether the whole page came over a verified TLS connection.
  bool isSecure() const;

  /// Runs the script in the page as soon as possible. `result`, if given, receives its value as
  /// text, "" when there is none or it fails. Nothing is called once the view is destroyed.
  void stringByEvaluatingJavaScriptFromString(const std::string& script,
                                              std::function<void(std::string)> result = {});

  const WebEngine::Settings& settings() const { return settings_; }
  void setScalesPageToFit(bool scales);
  void setAllowsInlineMediaPlayback(bool allows);
  void setMediaPlaybackRequiresUserAction(bool requires_);
  void setAllowsAirPlay(bool allows);
  void setDataDetectorTypes(unsigned types);

  WebEngine& engine() { return *engine_; }

 protected:
  void layoutSubviews() override;

 private:
  bool engineShouldStartLoad(const URLRequest& request, NavigationType type) override;
  void engineDidStartLoad() override;
  void engineDidFinishLoad() override;
  void engineDidFailLoad(const Error& error) override;
  void engineProcessDidEnd(const Error& error) override;
  void engineDidChangeTitle() override;

  WeakPtr<WebViewDelegate> delegate_;
  WebEngine::Settings settings_;
  std::unique_ptr<WebEngine> engine_;
};

}  // namespace valdren::platform
