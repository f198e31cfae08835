#include "ads/screens/VADWebAppViewController.h"

#include "ads/protocol/Messages.h"
#include "ads/screens/VADIntrinsicImages.h"
#include "ads/screens/VADWebAppViewControllerPrivate.h"
#include "ads/web/VADNotificationCenter.h"
#include "ads/web/VADOpener.h"

namespace valdren {
namespace {

constexpr double kCloseSide = 32;
constexpr double kSpinnerSide = 20;

}  // namespace

VADWebAppViewControllerPrivate::~VADWebAppViewControllerPrivate() {
  invalidateWeakReferences();
  if (webView && webViewDelegate) webViewDelegate->releaseWithWebView(std::move(webView));
}

std::shared_ptr<VADWebAppViewController> VADWebAppViewController::create() {
  return initialized(std::shared_ptr<VADWebAppViewController>(new VADWebAppViewController));
}

std::shared_ptr<VADViewControllerPrivate> VADWebAppViewController::createPrivateData() {
  return std::make_shared<VADWebAppViewControllerPrivate>();
}

VADWebAppViewControllerPrivate& VADWebAppViewController::vars() const {
  return static_cast<VADWebAppViewControllerPrivate&>(privateData());
}

void VADWebAppViewController::init() {
  VADViewController::init();
  vars().loadingSpinner =
      std::make_shared<platform::ActivityIndicator>(platform::ActivityIndicatorStyle::White);
}

void VADWebAppViewController::load(const std::optional<platform::URL>& url) {
  if (!url) return;
  if (webView()) {
    webView()->loadRequest({*url});
  } else {
    vars().urlToLoad = url;
  }
}

void VADWebAppViewController::loadHTML(const std::optional<std::string>& html,
                                       const std::optional<platform::URL>& baseURL) {
  if (!html) return;
  if (webView()) {
    webView()->loadHTMLString(*html, baseURL);
  } else {
    vars().htmlToLoad = html;
    vars().htmlBaseURLToLoad = baseURL;
  }
}

void VADWebAppViewController::setOriginOfGivenPage(std::optional<std::string> origin) {
  vars().originOfGivenPage = std::move(origin);
}

void VADWebAppViewController::viewWillAppear(bool animated) {
  VADViewController::viewWillAppear(animated);
  if (webView()) return;
  createWebView();
  loadWhatWaits();
  createCloseButton();
  showLoadingSpinner();
}

void VADWebAppViewController::createWebView() {
  const auto made = std::make_shared<VADWebView>(view()->bounds());
  setWebView(made);
  view()->addSubview(made);

  const auto delegate = VADWebAppWebViewDelegate::initWithWebAppPrivate(vars());
  vars().webViewDelegate = delegate;
  delegate->setViewController(this);
  delegate->setOpeningWebView(openingWebView());
  delegate->opener()->setAdController(adController().get());
  made->setDelegate(delegate.get());
}

void VADWebAppViewController::loadWhatWaits() {
  VADWebAppViewControllerPrivate& mine = vars();
  if (mine.urlToLoad) {
    load(mine.urlToLoad);
    mine.urlToLoad.reset();
  } else if (mine.htmlToLoad) {
    loadHTML(mine.htmlToLoad, mine.htmlBaseURLToLoad);
    mine.htmlToLoad.reset();
    mine.htmlBaseURLToLoad.reset();
  }
}

void VADWebAppViewController::createCloseButton() {
  const auto button = std::make_shared<platform::Button>(
      platform::ButtonStyle::Custom, platform::Rect{0, 0, kCloseSide, kCloseSide});
  button->setImage(VADIntrinsicImages::closeButton());
  button->setShowsTouchWhenHighlighted(true);
  button->setEnabled(true);
  button->setAccessibilityLabel("Close");
  button->setAction(platform::whileAlive(*this, [this] { relinquishScreen(); }));
  view()->addSubview(button);
  vars().closeButton = button;
}

void VADWebAppViewController::showLoadingSpinner() {
  const auto& spinner = vars().loadingSpinner;
  if (!spinner) return;
  const platform::Rect area = view()->bounds();
  spinner->setFrame({(area.width - kSpinnerSide) / 2, (area.height - kSpinnerSide) / 2,
                     kSpinnerSide, kSpinnerSide});
  spinner->setAutoresizingMask(platform::kFlexibleLeftMargin | platform::kFlexibleRightMargin);
  spinner->startAnimating();
  webView()->addSubview(spinner);
}

void VADWebAppViewController::viewDidAppear(bool animated) {
  VADViewController::viewDidAppear(animated);
  if (const auto delegate = vars().webViewDelegate) delegate->setPendingOnShow(true);
}

void VADWebAppViewController::viewDidDisappear(bool animated) {
  VADNotificationCenter::defaultCenter().postJSNotification(kVADMessageOnHide, std::nullopt,
                                                            webView().get());
  VADViewController::viewDidDisappear(animated);
}

void VADWebAppViewController::didRotateFromInterfaceOrientation(
    platform::InterfaceOrientation from) {
  VADViewController::didRotateFromInterfaceOrientation(from);
  if (!webView()) return;
  VADWebViewDelegate::notifyWebViewOfOrientationChange(*webView(), interfaceOrientation());
}

const std::shared_ptr<VADWebView>& VADWebAppViewController::webView() const {
  return vars().webView;
}
void VADWebAppViewController::setWebView(std::shared_ptr<VADWebView> webView) {
  vars().webView = std::move(webView);
}
const std::shared_ptr<VADAdController>& VADWebAppViewController::adController() const {
  return vars().adController;
}
void VADWebAppViewController::setAdController(std::shared_ptr<VADAdController> adController) {
  vars().adController = std::move(adController);
}

}  // namespace valdren
