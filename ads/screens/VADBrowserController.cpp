#include "ads/screens/VADBrowserController.h"

#include "ads/request/VADIdentifierUtilities.h"
#include "ads/screens/VADBrowserControllerPrivate.h"
#include "ads/screens/VADIntrinsicImages.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADOpener.h"
#include "platform/application/Application.h"
#include "platform/base/RunLoop.h"

namespace valdren {
namespace {

constexpr double kBarHeight = 44;
constexpr double kLandscapeBarHeight = 30;
constexpr double kItemWidth = 27;
constexpr double kSpinnerSide = 20;

/// The screen's view. Bars keep their height whatever size the window takes, where masks alone
/// would stretch them along.
class BrowserView final : public platform::View {
 public:
  BrowserView(const platform::Rect& frame, std::function<void()> laidOut)
      : View(frame), laidOut_(std::move(laidOut)) {}

 protected:
  void layoutSubviews() override { laidOut_(); }

 private:
  std::function<void()> laidOut_;
};

bool isTablet() {
  return !VADIdentifierUtilities::sharedInstance().isPhoneIdiom();
}

double usualToolbarHeight() {
  if (isTablet()) return kBarHeight;
  return VADIdentifierUtilities::sharedInstance().isOrientationLandscape() ? kLandscapeBarHeight
                                                                           : kBarHeight;
}

}  // namespace

VADBrowserControllerPrivate::~VADBrowserControllerPrivate() {
  invalidateWeakReferences();
  if (!webView) return;
  webView->setDelegate(nullptr);
  webViewDelegate.reset();
  webView->loadHTMLString("", std::nullopt);
}

std::shared_ptr<VADBrowserController> VADBrowserController::create() {
  return initialized(std::shared_ptr<VADBrowserController>(new VADBrowserController));
}

VADBrowserController::~VADBrowserController() {
  invalidateWeakReferences();
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
}

std::shared_ptr<VADViewControllerPrivate> VADBrowserController::createPrivateData() {
  return std::make_shared<VADBrowserControllerPrivate>();
}

VADBrowserControllerPrivate& VADBrowserController::vars() const {
  return static_cast<VADBrowserControllerPrivate&>(privateData());
}

void VADBrowserController::init() {
  VADViewController::init();
  view()->setBackgroundColor(platform::Color::white());
  if (!VADIdentifierUtilities::isOSAtLeastMajor(4, 0, 0)) return;
  platform::NotificationCenter::defaultCenter().addObserver(
      *this, platform::kApplicationWillEnterForeground,
      [this](const platform::Notification&) { appDidEnterForeground(); });
}

void VADBrowserController::loadView() {
  setView(std::make_shared<BrowserView>(platform::Rect{0, 0, 320, 480},
                                        platform::whileAlive(*this, [this] { layOut(); })));
}

void VADBrowserController::load(const std::optional<platform::URL>& url,
                                const std::optional<platform::URL>& referringURL) {
  if (!url) return;
  if (!webView()) {
    vars().urlToLoad = url;
    vars().referringURLToLoad = referringURL;
    return;
  }
  platform::URLRequest request{*url};
  if (referringURL) request.headers["Referer"] = referringURL->absoluteString();
  webView()->loadRequest(request);
}

void VADBrowserController::back() {
  if (webView() && webView()->canGoBack()) webView()->goBack();
}

void VADBrowserController::forward() {
  if (webView() && webView()->canGoForward()) webView()->goForward();
}

void VADBrowserController::reload() {
  if (webView()) webView()->reload();
}

void VADBrowserController::stop() {
  if (webView()) webView()->stopLoading();
}

void VADBrowserController::openInSafari() {
  VADOpener opener;
  opener.setDelegateManager(delegateManager());
  if (webView()) opener.openApp(webView()->currentURL());
  VADStatistics::sharedStatistics().setBreakOutToSafari();
}

void VADBrowserController::appDidEnterForeground() {
  const auto& delegate = vars().webViewDelegate;
  if (delegate && delegate->hasLoadedAtLeastOnce()) return;
  platform::RunLoop::shared().performAfterDelay(*this, platform::kNextTurn,
                                                [this] { relinquishScreen(); });
}

void VADBrowserController::viewWillAppear(bool animated) {
  VADViewController::viewWillAppear(animated);
  if (webView()) return;
  createWebView();
  if (vars().urlToLoad) {
    load(vars().urlToLoad, vars().referringURLToLoad);
    vars().urlToLoad.reset();
    vars().referringURLToLoad.reset();
  }
  createToolbar();
  createToolbarButtons();
  refreshToolbar();
  layOut();
}

void VADBrowserController::createWebView() {
  using namespace platform;
  const Rect area = view()->bounds();
  const auto made =
      std::make_shared<VADWebView>(Rect{0, 0, area.width, area.height - usualToolbarHeight()});
  made->setAutoresizingMask(isTablet() ? kFlexibleWidth | kFlexibleHeight
                                       : kFlexibleWidth | kFlexibleHeight | kFlexibleBottomMargin);
  view()->addSubview(made);
  made->setDataDetectorTypes(kAllDataDetectors);
  setWebView(made);

  const auto delegate = VADBrowserWebViewDelegate::initWithBrowserController(*this);
  vars().webViewDelegate = delegate;
  delegate->setViewController(this);
  delegate->setOpeningWebView(openingWebView());
  made->setDelegate(delegate.get());
}

void VADBrowserController::createToolbar() {
  using namespace platform;
  const Rect area = view()->bounds();
  const double height = usualToolbarHeight();
  const auto bar = std::make_shared<Toolbar>(Rect{0, area.height - height, area.width, height});
  bar->setAutoresizingMask(isTablet() ? kFlexibleWidth | kFlexibleTopMargin | kFlexibleBottomMargin
                                      : kFlexibleWidth | kFlexibleTopMargin | kFlexibleHeight |
                                            kFlexibleBottomMargin);
  bar->setAutoresizesSubviews(true);
  bar->setTintColor(Color::black());
  view()->addSubview(bar);
  setToolbar(bar);
  vars().prompt = std::make_shared<Label>();
  bar->setPrompt(vars().prompt);
}

std::shared_ptr<platform::BarButtonItem> VADBrowserController::buttonWithImage(
    const std::shared_ptr<platform::Image>& image, const std::string& name, double width,
    bool enabled, void (VADBrowserController::*action)()) {
  auto item = platform::BarButtonItem::withImage(
      image, platform::whileAlive(*this, [this, action] { (this->*action)(); }));
  item->setWidth(width);
  item->setEnabled(enabled);
  item->setAccessibilityLabel(name);
  return item;
}

std::shared_ptr<platform::BarButtonItem> VADBrowserController::systemItem(
    platform::BarSystemItem which, const std::string& name, double width, bool enabled,
    void (VADBrowserController::*action)()) {
  auto item = platform::BarButtonItem::withSystemItem(
      which, platform::whileAlive(*this, [this, action] { (this->*action)(); }));
  item->setWidth(width);
  item->setEnabled(enabled);
  item->setAccessibilityLabel(name);
  return item;
}

void VADBrowserController::createToolbarButtons() {
  using namespace platform;
  VADBrowserControllerPrivate& mine = vars();
  mine.flexibleSpaceButton = BarButtonItem::withSystemItem(BarSystemItem::FlexibleSpace);
  mine.backButton = buttonWithImage(VADIntrinsicImages::browserBackButton(), "Back", kItemWidth,
                                    false, &VADBrowserController::back);
  mine.forwardButton = buttonWithImage(VADIntrinsicImages::browserForwardButton(), "Forward",
                                       kItemWidth, false, &VADBrowserController::forward);
  mine.spinner = std::make_shared<ActivityIndicator>(ActivityIndicatorStyle::White,
                                                     Rect{0, 0, kSpinnerSide, kSpinnerSide});
  mine.spinner->setAutoresizingMask(kFlexibleLeftMargin | kFlexibleRightMargin);
  mine.spinnerContainingButton = BarButtonItem::withCustomView(mine.spinner);
  mine.spinnerContainingButton->setWidth(kSpinnerSide);
  mine.spinnerContainingButton->setAccessibilityLabel("Spinner");
  mine.reloadButton =
      systemItem(BarSystemItem::Refresh, "Reload", kItemWidth, true, &VADBrowserController::reload);
  mine.safariButton = systemItem(BarSystemItem::Action, "View in Safari", kItemWidth, false,
                                 &VADBrowserController::openInSafari);
  mine.doneButton = BarButtonItem::withSystemItem(
      BarSystemItem::Done, whileAlive(*this, [this] { relinquishScreen(); }));
  mine.doneButton->setAccessibilityLabel("Done");
}

void VADBrowserController::refreshToolbar() {
  const VADBrowserControllerPrivate& mine = vars();
  if (!mine.webView || !mine.doneButton) return;
  mine.backButton->setEnabled(mine.webView->canGoBack());
  mine.forwardButton->setEnabled(mine.webView->canGoForward());
  const bool loading = mine.webView->isLoading();
  if (loading) {
    mine.spinner->startAnimating();
  } else {
    mine.spinner->stopAnimating();
  }
  mine.safariButton->setEnabled(!loading);
  const auto& space = mine.flexibleSpaceButton;
  mine.toolbar->setItems({mine.backButton, space, mine.forwardButton, space,
                          loading ? mine.spinnerContainingButton : mine.reloadButton, space,
                          mine.safariButton, space, mine.doneButton});
  refreshPrompt();
}

void VADBrowserController::refreshPrompt() {
  const VADBrowserControllerPrivate& mine = vars();
  if (!mine.webView || !mine.prompt) return;
  const std::optional<platform::URL> url = mine.webView->currentURL();
  const std::string host = url ? url->host() : "";
  const std::string title = mine.webView->title();
  mine.webView->setAccessibilityLabel(!title.empty() ? title : !host.empty() ? host : "Web page");
  if (host.empty() || mine.webView->isLoading()) {
    mine.prompt->setSymbol(platform::Symbol::None, "");
    // Whose page it is that did not come stays to be seen.
    if (!host.empty() || mine.webViewDelegate->hasLoadedAtLeastOnce()) mine.prompt->setText(host);
    mine.prompt->setDetail("");
    return;
  }
  if (mine.webView->isSecure()) {
    mine.prompt->setSymbol(platform::Symbol::Secure, "Secure connection");
  } else {
    mine.prompt->setSymbol(platform::Symbol::NotSecure, "Not secure");
  }
  mine.prompt->setText(host);
  mine.prompt->setDetail(title);
}

void VADBrowserController::layOut() {
  if (!webView() || !toolbar()) return;
  const platform::Rect area = view()->bounds();
  const double height = toolbar()->heightFrom(usualToolbarHeight());
  webView()->setFrame({0, 0, area.width, area.height - height});
  toolbar()->setFrame({0, area.height - height, area.width, height});
}

void VADBrowserController::didRotateFromInterfaceOrientation(platform::InterfaceOrientation from) {
  VADViewController::didRotateFromInterfaceOrientation(from);
  layOut();
  if (!webView()) return;
  VADWebViewDelegate::notifyWebViewOfOrientationChange(*webView(), interfaceOrientation());
}

bool VADBrowserController::backPressed() {
  if (!webView() || !webView()->canGoBack()) return VADViewController::backPressed();
  back();
  return true;
}

const std::shared_ptr<VADWebView>& VADBrowserController::webView() const {
  return vars().webView;
}
void VADBrowserController::setWebView(std::shared_ptr<VADWebView> webView) {
  vars().webView = std::move(webView);
}
const std::shared_ptr<platform::Toolbar>& VADBrowserController::toolbar() const {
  return vars().toolbar;
}
void VADBrowserController::setToolbar(std::shared_ptr<platform::Toolbar> toolbar) {
  vars().toolbar = std::move(toolbar);
}

}  // namespace valdren
