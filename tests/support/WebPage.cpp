#include "tests/support/WebPage.h"

#include <gtk/gtk.h>
#include <gtkmm/window.h>
#include <algorithm>
#include <set>

#include "platform/ui/NativeView.h"
#include "platform/ui/NativeWindow.h"
#include "tests/support/Loop.h"
#include "tests/support/Pointer.h"
#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

using platform::URL;

bool RecordingDelegate::webViewShouldStartLoad(platform::WebView&,
                                               const platform::URLRequest& request,
                                               platform::NavigationType type) {
  requests.push_back(request);
  keep("ask " + std::to_string(int(type)) + " " + request.url.absoluteString());
  if (decide) return decide(request, type);
  const std::set<std::string> loadable{"http", "https", "about", "data", "blob"};
  return loadable.contains(request.url.lowercaseScheme());
}

void RecordingDelegate::webViewDidFailLoad(platform::WebView&, const platform::Error& error) {
  lastError = error;
  keep("fail");
}

void RecordingDelegate::keep(const std::string& line) {
  lines.push_back(line);
  if (during) during(line);
}

int RecordingDelegate::count(const std::string& line) const {
  return int(std::count(lines.begin(), lines.end(), line));
}

bool RecordingDelegate::asked(const std::string& address) const {
  return std::any_of(requests.begin(), requests.end(), [&](const platform::URLRequest& request) {
    return request.url.absoluteString() == address;
  });
}

std::vector<std::string> RecordingDelegate::addressesOf(const std::string& scheme) const {
  std::vector<std::string> addresses;
  for (const platform::URLRequest& request : requests) {
    if (request.url.lowercaseScheme() == scheme) addresses.push_back(request.url.absoluteString());
  }
  return addresses;
}

Page::Page(const platform::Rect& frame, platform::WebView* related)
    : view(std::make_shared<platform::WebView>(frame, related)) {
  view->setDelegate(&delegate);
}

Page::Page(std::shared_ptr<platform::WebView> made) : view(std::move(made)) {
  view->setDelegate(&delegate);
}

Page::~Page() {
  if (window) window->setRootViewController(nullptr);
}

void Page::show(platform::Size size) {
  window = std::make_shared<platform::Window>(size);
  auto screen = std::make_shared<platform::ViewController>();
  screen->view()->addSubview(view);
  window->setRootViewController(screen);
  window->setStatusBarHidden(true);
  window->makeKeyAndVisible();
  runUntil([&] { return gtk_widget_get_mapped(GTK_WIDGET(window->native().window().gobj())); });
  runFor(0.1);
}

bool Page::load(const std::string& html, const std::string& base) {
  const int before = ends();
  view->loadHTMLString(html, base.empty() ? std::nullopt : URL::parse(base));
  return waitForEnd(before);
}

bool Page::go(const std::string& address) {
  const int before = ends();
  view->loadRequest({*URL::parse(address)});
  return waitForEnd(before);
}

bool Page::waitForEnd(int endsBefore) {
  const int failsBefore = delegate.fails();
  return runUntil([&] { return ends() > endsBefore; }, 20) && delegate.fails() == failsBefore;
}

std::string Page::evaluate(const std::string& script) {
  auto result = std::make_shared<std::optional<std::string>>();
  view->stringByEvaluatingJavaScriptFromString(
      script, [result](std::string text) { *result = std::move(text); });
  return runUntil([&] { return result->has_value(); }) ? **result : "(no result)";
}

bool Page::becomes(const std::string& script, const std::string& text, double seconds) {
  return runUntil([&] { return evaluate(script) == text; }, seconds);
}

void Page::click(platform::Point point) {
  clickWidget(GTK_WIDGET(view->native().widget().gobj()), point);
}

std::vector<int> webProcesses() {
  std::vector<int> web = processFamily();
  std::erase_if(web, [](int each) { return !nameOfProcess(each).starts_with("WebKitWebProces"); });
  return web;
}

}  // namespace quorbel_tests
