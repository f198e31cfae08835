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

/// Asked and told about a web view's navigations. Everything but the decision is optional. A load
/// that was told to have started ends with one "finished" or one "failed", unless another load
/// takes its place; a navigation that is refused before it starts is told nothing of. The end of
/// the page's process is one "failed", whether a load was under way or not, unless the delegate
/// makes something else of it. The view may be destroyed in each call.
class WebViewDelegate : public virtual Trackable {
 public:
  /// Whether the navigation (main frame or subframe) may go ahead.
  virtual bool webViewShouldStartLoad(WebView&, const URLRequest& request, NavigationType type) = 0;
  virtual void webViewDidStartLoad(WebView&) {}
  virtual void webViewDidFinishLoad(WebView&) {}
  virtual void webViewDidFailLoad(WebView&, const Error&) {}
  /// Nothing is left of the page that was shown or loaded.
  virtual void webViewProcessDidEnd(WebView& view, const Error& error) {
    webViewDidFailLoad(view, error);
  }
  virtual void webViewDidChangeTitle(WebView&) {}

 protected:
  ~WebViewDelegate() = default;
};

/// The engine behind one web view; the seam that tests replace.
class WebEngine {
 public:
  /// What the engine asks of and tells its web view.
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
  /// The engine's own user agent text.
  virtual std::string userAgent() const = 0;
};

/// Makes engines.
class WebEngines : public Shared<WebEngines> {
 public:
  static WebEngines& standard();
  virtual ~WebEngines() = default;
  /// An engine that draws into `host` and reports to `client`; both outlive it. With `related`, it
  /// shares that engine's web process.
  virtual std::unique_ptr<WebEngine> makeEngine(View& host, WebEngine::Client& client,
                                                WebEngine* related) = 0;
  /// Starts what takes longest about the next engine without a `related` one, which is going to be
  /// made soon.
  virtual void prepare() {}
};

/// Pages are kept apart from the person's own browsing: nothing of them outlives the process, and
/// they get no permissions, downloads, files or windows of their own.
class WebView : public View, private WebEngine::Client {
 public:
  /// With `related`, shares that view's web process, which saves starting one.
  explicit WebView(const Rect& frame = {}, WebView* related = nullptr);
  ~WebView() override;

  /// A view of its own is going to be needed in a moment: its web process starts now, and ends
  /// again when none comes for some seconds.
  static void prepareNext() { WebEngines::shared().prepare(); }

  void setDelegate(WeakPtr<WebViewDelegate> delegate) { delegate_ = delegate; }
  WebViewDelegate* delegate() const { return delegate_.get(); }

  void loadRequest(const URLRequest& request);
  /// Shows `html` as the page at `baseURL` (about:blank when absent).
  void loadHTMLString(const std::string& html, const std::optional<URL>& baseURL);
  /// Asks the page's address again; a page that was given as text is not asked for again.
  void reload();
  /// A load that has started fails then, on the next turn of the run loop.
  void stopLoading();
  void goBack();
  void goForward();
  bool canGoBack() const;
  bool canGoForward() const;
  bool isLoading() const;
  /// The address of the page that is shown or being loaded.
  std::optional<URL> currentURL() const;
  /// The address of the page that is shown, whose scripts run, whatever is being loaded in its
  /// place; none before the first page, and when its process has ended.
  std::optional<URL> shownURL() const;
  std::string title() const;
  /// Whether the page came whole over a verified TLS connection.
  bool isSecure() const;

  /// Runs the script in the page once it can; `result` (when given) gets its value as text, "" when
  /// it has none or fails. Nothing is called once the view is gone.
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
  /// Presses and clicks what the page shows there.
  bool tapped(Point point) override;

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
