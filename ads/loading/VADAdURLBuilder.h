// The hidden page in which the ad engine script turns request parameters into an ad URL.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/base/NotificationCenter.h"
#include "platform/base/RunLoop.h"
#include "platform/base/Seconds.h"
#include "platform/base/Value.h"
#include "platform/base/WeakPtr.h"
#include "platform/web/WebView.h"

namespace valdren {

class VADWebViewDelegate;

/// The page exists only until the script has answered, or should have. Main thread only.
class VADAdURLBuilder : public platform::WeakTarget {
 public:
  /// So long may the script take to answer, the start of a web process included, in seconds.
  static constexpr platform::Seconds kBuildSeconds{30};

  using Answer = std::function<void(const platform::Dictionary& userInfo)>;

  /// What the script may answer with, and what stands for none in time. Each is called after the
  /// page is gone.
  struct Answers {
    Answer loadAdURL;
    Answer invalidRequest;
    Answer unableToServe;
    std::function<void()> none;
  };

  explicit VADAdURLBuilder(Answers answers) : answers_(std::move(answers)) {}
  ~VADAdURLBuilder();
  VADAdURLBuilder(const VADAdURLBuilder&) = delete;
  VADAdURLBuilder& operator=(const VADAdURLBuilder&) = delete;

  /// The page that calls the script's entry function with the parameters.
  static std::string pageWithScript(std::string_view script,
                                    const platform::Dictionary& parameters);

  /// Loads the page in a hidden view that shares the web process of `related`. A page whose script
  /// has not answered yet is dropped.
  void build(const std::string& page, platform::WebView& related);
  /// Drops the page; its answers are no longer heard.
  void resetBuildAdWebView();

  /// Null unless a page is waiting for its script's answer.
  platform::WebView* buildAdWebView() const { return buildAdWebView_.get(); }

 private:
  void setupBuildAdWebView(platform::WebView& related);
  void observe(std::string_view name, const Answer& answer);
  void giveUp();

  Answers answers_;
  std::shared_ptr<VADWebViewDelegate> buildAdWebViewDelegate_;
  std::shared_ptr<platform::WebView> buildAdWebView_;
  std::unique_ptr<platform::Timer> deadline_;
};

}  // namespace valdren
