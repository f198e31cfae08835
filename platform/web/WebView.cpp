#include "platform/web/WebView.h"

namespace valdren::platform {

WebView::WebView(const Rect& frame, WebView* related)
    : View(frame),
      engine_(WebEngines::shared().makeEngine(*this, *this,
                                              related ? related->engine_.get() : nullptr)) {
  setClipsToBounds(true);
}

WebView::~WebView() {
  invalidateWeakReferences();
  engine_.reset();
}

void WebView::loadRequest(const URLRequest& request) {
  engine_->loadRequest(request);
}

void WebView::loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) {
  engine_->loadHTML(html, baseURL);
}

void WebView::reload() {
  engine_->reload();
}

void WebView::stopLoading() {
  engine_->stopLoading();
}

void WebView::goBack() {
  engine_->goBack();
}

void WebView::goForward() {
  engine_->goForward();
}

bool WebView::canGoBack() const {
  return engine_->canGoBack();
}

bool WebView::canGoForward() const {
  return engine_->canGoForward();
}

bool WebView::isLoading() const {
  return engine_->isLoading();
}

std::optional<URL> WebView::currentURL() const {
  return engine_->currentURL();
}

std::optional<URL> WebView::shownURL() const {
  return engine_->shownURL();
}

std::string WebView::title() const {
  return engine_->title();
}

bool WebView::isSecure() const {
  return engine_->isSecure();
}

void WebView::stringByEvaluatingJavaScriptFromString(const std::string& script,
                                                     std::function<void(std::string)> result) {
  if (!result) return engine_->evaluate(script, {});
  engine_->evaluate(script, whileAlive(*this, std::move(result)));
}

void WebView::setScalesPageToFit(bool scales) {
  settings_.scalesPageToFit = scales;
  engine_->apply(settings_);
}

void WebView::setAllowsInlineMediaPlayback(bool allows) {
  settings_.allowsInlineMediaPlayback = allows;
  engine_->apply(settings_);
}

void WebView::setMediaPlaybackRequiresUserAction(bool requires_) {
  settings_.mediaPlaybackRequiresUserAction = requires_;
  engine_->apply(settings_);
}

void WebView::setAllowsAirPlay(bool allows) {
  settings_.allowsAirPlay = allows;
  engine_->apply(settings_);
}

void WebView::setDataDetectorTypes(unsigned types) {
  settings_.dataDetectorTypes = types;
  engine_->apply(settings_);
}

void WebView::layoutSubviews() {
  engine_->boundsChanged();
}

bool WebView::engineShouldStartLoad(const URLRequest& request, NavigationType type) {
  WebViewDelegate* const delegate = delegate_.get();
  return !delegate || delegate->webViewShouldStartLoad(*this, request, type);
}

void WebView::engineDidStartLoad() {
  if (WebViewDelegate* const delegate = delegate_.get()) delegate->webViewDidStartLoad(*this);
}

void WebView::engineDidFinishLoad() {
  if (WebViewDelegate* const delegate = delegate_.get()) delegate->webViewDidFinishLoad(*this);
}

void WebView::engineDidFailLoad(const Error& error) {
  if (WebViewDelegate* const delegate = delegate_.get()) delegate->webViewDidFailLoad(*this, error);
}

void WebView::engineProcessDidEnd(const Error& error) {
  if (WebViewDelegate* const delegate = delegate_.get()) {
    delegate->webViewProcessDidEnd(*this, error);
  }
}

void WebView::engineDidChangeTitle() {
  if (WebViewDelegate* const delegate = delegate_.get()) delegate->webViewDidChangeTitle(*this);
}

}  // namespace valdren::platform
