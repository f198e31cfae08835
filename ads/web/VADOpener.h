// Opens what an ad asks for: a landing page, a web app, a mail, or whatever the system opens.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ads/web/VADAdController.h"
#include "platform/application/MailComposer.h"
#include "platform/base/URL.h"
#include "platform/ui/ViewController.h"
#include "platform/web/WebView.h"

namespace valdren {

class VADAdEvents;
class VADNotification;
class VADScreen;
class VADScreenFactory;
struct VADScreenOptions;

/// Each web view delegate owns one. Quietly does nothing where the destination, or the view
/// controller to present over, is missing. Main thread only.
class VADOpener : public platform::MailComposerDelegate {
 public:
  /// The screens outlive the opener. Without any it opens pages nowhere, but still mails and
  /// applications.
  explicit VADOpener(VADScreenFactory* screens = nullptr) : screens_(screens) {}
  virtual ~VADOpener() { invalidateWeakReferences(); }
  VADOpener(const VADOpener&) = delete;
  VADOpener& operator=(const VADOpener&) = delete;

  /// Carries out an "open" message.
  virtual void openNotification(const VADNotification& notification);
  // Orientations are `VADOrientationCode`s.
  virtual void openBrowserToURL(const std::optional<platform::URL>& url, int supportedOrientations);
  virtual void openWebApp(const std::optional<platform::URL>& url, int supportedOrientations);
  virtual void openWebAppWithHTML(const std::optional<std::string>& html,
                                  int supportedOrientations);
  /// Hands the URL to the system, once running pings have had time to leave.
  virtual void openApp(const std::optional<platform::URL>& url);
  /// Shows a mail composer filled in from a "mailto:" URL.
  virtual void openEmailComposer(const std::optional<platform::URL>& url);
  /// Fires the click pings of the ad.
  void didOpen();
  /// Gives the keyboard back to the screen; the result does not matter.
  void mailComposerDidFinish(platform::MailComposer& composer,
                             platform::MailResult result) override;

  const std::shared_ptr<VADAdEvents>& delegateManager() const { return delegateManager_; }
  void setDelegateManager(std::shared_ptr<VADAdEvents> manager) {
    delegateManager_ = std::move(manager);
  }
  /// The screen to present over; not owned.
  platform::ViewController* viewController() const { return viewController_.get(); }
  void setViewController(platform::WeakPtr<platform::ViewController> viewController) {
    viewController_ = viewController;
  }
  /// The page from which the click came.
  const std::optional<platform::URL>& referringURL() const { return referringURL_; }
  void setReferringURL(std::optional<platform::URL> url) { referringURL_ = std::move(url); }
  /// Handed to the screens that are opened, so that their pages can reach it; not owned.
  platform::WebView* openingWebView() const { return openingWebView_.get(); }
  void setOpeningWebView(platform::WeakPtr<platform::WebView> webView) {
    openingWebView_ = webView;
  }
  /// The loader whose click pings are fired; not owned.
  VADAdController* adController() const { return adController_.get(); }
  void setAdController(platform::WeakPtr<VADAdController> adController) {
    adController_ = adController;
  }

 private:
  bool canOpenScreens() const { return screens_ && viewController(); }
  VADScreenOptions optionsFor(int supportedOrientations) const;
  void present(VADScreen& screen);

  VADScreenFactory* screens_;
  std::shared_ptr<VADAdEvents> delegateManager_;
  platform::WeakPtr<platform::ViewController> viewController_;
  std::optional<platform::URL> referringURL_;
  platform::WeakPtr<platform::WebView> openingWebView_;
  platform::WeakPtr<VADAdController> adController_;
};

}  // namespace valdren
