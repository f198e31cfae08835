#include "tests/support/FakeApplication.h"

#include <utility>

#include "platform/base/NotificationCenter.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

void FakeApplication::setStatusBarHidden(bool hidden) {
  statusBarChanges.push_back(hidden);
  statusBarHidden_ = hidden;
}

void FakeApplication::openURL(const platform::URL& url) {
  openedURLs.push_back(url.absoluteString());
}

bool FakeApplication::canOpenURL(const platform::URL& url) const {
  return openableURLs.contains(url.absoluteString()) ||
         openableSchemes.contains(url.lowercaseScheme());
}

platform::BackgroundTaskID FakeApplication::beginBackgroundTask(std::function<void()> expired) {
  if (!grantsBackgroundTasks) return 0;
  tasks_[++lastTask_] = std::move(expired);
  return lastTask_;
}

void FakeApplication::endBackgroundTask(platform::BackgroundTaskID task) {
  tasks_.erase(task);
}

void FakeApplication::expireBackgroundTasks() {
  for (auto& [task, expired] : std::exchange(tasks_, {})) {
    if (expired) expired();
  }
}

void FakeApplication::post(const char* notice) {
  platform::NotificationCenter::defaultCenter().postNotificationName(notice, this);
}

void FakeApplication::enterBackground() {
  state = platform::ApplicationState::Inactive;
  post(platform::kApplicationWillResignActive);
  state = platform::ApplicationState::Background;
  post(platform::kApplicationDidEnterBackground);
}

void FakeApplication::enterForeground() {
  state = platform::ApplicationState::Inactive;
  post(platform::kApplicationWillEnterForeground);
  state = platform::ApplicationState::Active;
  post(platform::kApplicationDidBecomeActive);
}

}  // namespace quorbel_tests
