#include "tests/support/Fakes.h"

#include <algorithm>
#include <utility>

#include "platform/base/NotificationCenter.h"

namespace quorbel_tests {

void FakeRunLoop::advance(double seconds) {
  const double end = now_ + seconds;
  const SourceID addedLater = next_;
  while (true) {
    auto soonest = sources_.end();
    for (auto source = sources_.begin(); source != sources_.end(); ++source) {
      const bool waitsForNextTurn = source->first >= addedLater && source->second.due <= now_;
      if (source->second.due > end || (seconds == 0 && waitsForNextTurn)) continue;
      if (soonest == sources_.end() || source->second.due < soonest->second.due) soonest = source;
    }
    if (soonest == sources_.end()) break;
    const double due = std::max(now_, soonest->second.due);
    if (clock_) clock_->advance(due - now_);
    now_ = due;
    const Task task = std::move(soonest->second.task);
    sources_.erase(soonest);
    task();
  }
  if (clock_) clock_->advance(end - now_);
  now_ = end;
}

platform::RunLoop::SourceID FakeRunLoop::addSource(platform::Seconds delay, Task task) {
  const SourceID source = next_++;
  sources_[source] = {now_ + delay.count(), std::move(task)};
  return source;
}

std::optional<platform::Value> FakeUserDefaults::objectForKey(std::string_view key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::unique_ptr<platform::Timer> FakeScreen::whenSettled(std::function<void()> task) {
  if (settlesIn >= 0) {
    return platform::RunLoop::shared().scheduleTimer(platform::Seconds(settlesIn), std::move(task));
  }
  task();
  return nullptr;
}

void FakeApplication::setStatusBarHidden(bool hidden) {
  statusBarChanges.push_back(hidden);
  statusBarHidden_ = hidden;
}

platform::BackgroundTaskID FakeApplication::beginBackgroundTask(std::function<void()> expired) {
  if (!grantsBackgroundTasks) return 0;
  tasks_[++lastTask_] = std::move(expired);
  return lastTask_;
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
