#include "ads/telemetry/VADTimingManager.h"

#include "platform/application/Application.h"
#include "platform/base/MainThread.h"
#include "platform/base/NotificationCenter.h"
#include "platform/storage/UserDefaults.h"

namespace valdren {

VADTimingManager::VADTimingManager(std::string identifier) : identifier_(std::move(identifier)) {
  platform::assertMainThread();
  loadPersistentTimings();
  platform::NotificationCenter::defaultCenter().addObserver(
      *this, platform::kApplicationWillTerminate,
      [this](const platform::Notification&) { savePersistentTimings(); });
}

VADTimingManager::~VADTimingManager() {
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
  savePersistentTimings();
}

std::vector<std::shared_ptr<VADTiming>> VADTimingManager::timings() const {
  std::vector<std::shared_ptr<VADTiming>> all;
  for (const auto& [category, timing] : timings_) all.push_back(timing);
  return all;
}

std::vector<std::string> VADTimingManager::categories() const {
  std::vector<std::string> all;
  for (const auto& [category, timing] : timings_) all.push_back(category);
  return all;
}

std::string VADTimingManager::userDefaultsKey() const {
  return "valdren_timing_" + identifier_;
}

void VADTimingManager::loadPersistentTimings() {
  const auto kept = platform::UserDefaults::shared().objectForKey(userDefaultsKey());
  if (!kept || !kept->dictionary()) return;
  for (const auto& [category, representation] : *kept->dictionary()) {
    if (!representation.dictionary()) continue;
    auto timing = VADTiming::initWithDictionaryRepresentation(*representation.dictionary());
    if (timing) timings_[category] = std::move(timing);
  }
}

void VADTimingManager::savePersistentTimings() {
  platform::assertMainThread();
  platform::Dictionary representations;
  for (const auto& [category, timing] : timings_) {
    representations.set(category, timing->dictionaryRepresentation());
  }
  platform::UserDefaults::shared().setObject(userDefaultsKey(), std::move(representations));
  platform::UserDefaults::shared().synchronize();
}

std::shared_ptr<VADTiming> VADTimingManager::addTimingWithCategory(const std::string& category) {
  auto timing = std::make_shared<VADTiming>(category);
  addTiming(timing);
  return timing;
}

void VADTimingManager::addTiming(std::shared_ptr<VADTiming> timing) {
  platform::assertMainThread();
  if (!timing) return;
  const std::string category = timing->category();
  timings_[category] = std::move(timing);
}

std::shared_ptr<VADTiming> VADTimingManager::timingForCategory(const std::string& category) const {
  const auto found = timings_.find(category);
  return found == timings_.end() ? nullptr : found->second;
}

void VADTimingManager::removeTimingForCategory(const std::string& category) {
  timings_.erase(category);
}

void VADTimingManager::removeTiming(const VADTiming& timing) {
  removeTimingForCategory(std::string(timing.category()));
}

void VADTimingManager::removeTimingsForCategories(const std::vector<std::string>& categories) {
  for (const std::string& category : categories) removeTimingForCategory(category);
}

void VADTimingManager::removeAllTimings() {
  timings_.clear();
}

}  // namespace valdren
