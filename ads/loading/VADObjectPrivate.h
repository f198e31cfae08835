// The engine behind one banner view.
#pragma once

#include <memory>
#include <string>

#include "ads/api/VADDelegateManager.h"
#include "ads/loading/VADRequestPrivate.h"
#include "platform/View.h"
#include "platform/ViewController.h"

namespace valdren {

class VADObjectPrivate : public platform::Trackable,
                         public std::enable_shared_from_this<VADObjectPrivate> {
 public:
  /// A loader for the view, which it does not own.
  static std::shared_ptr<VADObjectPrivate> initWithView(platform::View& view);

  const std::string& adUnitID() const { return adUnitID_; }
  void setAdUnitID(const std::string& adUnitID) { adUnitID_ = adUnitID; }
  platform::ViewController* rootViewController() const { return rootViewController_.get(); }
  void setRootViewController(platform::ViewController* controller) {
    rootViewController_ = controller;
  }
  const std::shared_ptr<VADDelegateManager>& delegateManager() const { return delegateManager_; }
  const std::shared_ptr<VADRequestPrivate>& request() const { return request_; }
  bool hasAutoRefreshed() const { return hasAutoRefreshed_; }

  void loadRequest(const std::shared_ptr<VADRequest>& request);
  /// Drops every delayed call and the pending refresh.
  void cancelPendingActions();

 private:
  explicit VADObjectPrivate(platform::View& view) : adView_(&view) {}

  platform::WeakPtr<platform::View> adView_;
  std::string adUnitID_;
  std::shared_ptr<VADDelegateManager> delegateManager_ = std::make_shared<VADDelegateManager>();
  platform::WeakPtr<platform::ViewController> rootViewController_;
  std::shared_ptr<VADRequestPrivate> request_;
  bool hasAutoRefreshed_ = false;
};

}  // namespace valdren
