// The speed of messages from a page through the bridge, compared with a plain WebKitGTK view that
// reads each navigation in "decide-policy" and refuses it.
// tools/with_session benchmark_messages [ROUNDS]
#include <cstdio>
#include <cstdlib>
#include <string>

#include "ads/protocol/Messages.h"
#include "ads/web/VADWebView.h"
#include "ads/web/VADWebViewDelegate.h"
#include "benchmarks/Figures.h"
#include "benchmarks/support/BareView.h"
#include "benchmarks/support/Environment.h"
#include "benchmarks/support/LoopWork.h"
#include "platform/application/Host.h"

namespace platform = valdren::platform;

namespace {

using namespace benchmarks;

constexpr int kDefaultRounds = 20;
/// Below a page's burst limit, above which messages are slowed down on purpose.
constexpr int kMessages = 400;
constexpr double kPatience = 30;

/// Sends the messages on request, each as a frame's navigation.
const char* const kPage = R"html(<!DOCTYPE html><body><script>
function sendAll(count) {
  for (let number = 0; number < count; ++number) {
    const frame = document.createElement('iframe');
    frame.src = 'gmsg://urvo/touch?tx=' + number + '&ty=20&td=30';
    document.body.appendChild(frame);
  }
}
</script></body>)html";

/// The real delegate of an ad's page, with a counter.
class CountingDelegate final : public valdren::VADWebViewDelegate {
 public:
  bool webViewShouldStartLoad(platform::WebView& webView, const platform::URLRequest& request,
                              platform::NavigationType type) override {
    const bool allowed = VADWebViewDelegate::webViewShouldStartLoad(webView, request, type);
    if (request.url.lowercaseScheme() == valdren::kVADMessageScheme) ++messages;
    return allowed;
  }
  void webViewDidFinishLoad(platform::WebView& webView) override {
    VADWebViewDelegate::webViewDidFinishLoad(webView);
    loaded = true;
  }
  int messages = 0;
  bool loaded = false;
};

struct Rate {
  Figures perSecond;
  Figures microseconds;  // of the main thread, a message

  void add(double seconds, const LoopWork& work) {
    perSecond.add(kMessages / seconds);
    microseconds.add(work.processor * 1000 / kMessages);
  }
  void print(const char* title) const {
    benchmarks::title(title);
    perSecond.print("  messages a second", "/s");
    microseconds.print("  main thread's own time a message", "us");
  }
};

std::string sendScript() {
  return "sendAll(" + std::to_string(kMessages) + ")";
}

void throughBridge(GtkWidget* box, Rate& rate) {
  const auto view = std::make_shared<valdren::VADWebView>(platform::Rect{0, 0, 320, 50});
  const auto delegate = std::make_shared<CountingDelegate>();
  view->setDelegate(delegate.get());
  GtkWidget* const widget = platform::hostWidget(view);
  gtk_box_append(GTK_BOX(box), widget);
  view->loadHTMLString(kPage, std::nullopt);
  if (runUntil([&] { return delegate->loaded; }, kPatience)) {
    runFor(0.2);
    restartLoopWork();
    const double began = seconds();
    view->stringByEvaluatingJavaScriptFromString(sendScript());
    if (runUntil([&] { return delegate->messages >= kMessages; }, kPatience)) {
      rate.add(seconds() - began, loopWork());
    }
  }
  gtk_box_remove(GTK_BOX(box), widget);
}

gboolean count(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
               gpointer counter) {
  if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) return FALSE;
  auto* const action = webkit_navigation_policy_decision_get_navigation_action(
      WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  const char* const address =
      webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  if (!g_str_has_prefix(address, "gmsg:")) return FALSE;
  ++*static_cast<int*>(counter);
  webkit_policy_decision_ignore(decision);
  return TRUE;
}

void bare(GtkWidget* box, Rate& rate) {
  int messages = 0;
  BareView view(box, 320, 50);
  g_signal_connect(view.view(), "decide-policy", G_CALLBACK(count), &messages);
  webkit_web_view_load_html(view.view(), kPage, nullptr);
  if (!runUntil([&] { return view.finishedAt() > 0; }, kPatience)) return;
  runFor(0.2);
  restartLoopWork();
  const double began = seconds();
  webkit_web_view_evaluate_javascript(view.view(), sendScript().c_str(), -1, nullptr, nullptr,
                                      nullptr, nullptr, nullptr);
  if (runUntil([&] { return messages >= kMessages; }, kPatience)) {
    rate.add(seconds() - began, loopWork());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int asked = argc > 1 ? std::atoi(argv[1]) : kDefaultRounds;
  const Toolkit toolkit;
  GtkWidget* const window = gtk_window_new();
  GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_window_set_default_size(GTK_WINDOW(window), 360, 200);
  gtk_window_set_child(GTK_WINDOW(window), box);
  gtk_window_present(GTK_WINDOW(window));

  Rate ours;
  Rate plain;
  for (int round = 0; round < (asked > 0 ? asked : kDefaultRounds); ++round) {
    throughBridge(box, ours);
    bare(box, plain);
  }
  ours.print("Through the bridge");
  plain.print("Bare \"decide-policy\"");
  if (plain.perSecond.median() > 0) {
    std::printf("The bridge reaches %.2f of the bare rate.\n",
                ours.perSecond.median() / plain.perSecond.median());
  }
  gtk_window_destroy(GTK_WINDOW(window));
  return 0;
}
