// The timings of one registry, kept from one launch to the next.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ads/telemetry/VADTiming.h"
#include "platform/base/WeakPtr.h"

namespace valdren {

/// One timing a category. Loads what was kept when it is made; keeps it when the application ends,
/// when asked to, and when it is destroyed. Main thread only.
class VADTimingManager : public platform::WeakTarget {
 public:
  explicit VADTimingManager(std::string identifier);
  ~VADTimingManager();
  VADTimingManager(const VADTimingManager&) = delete;
  VADTimingManager& operator=(const VADTimingManager&) = delete;

  const std::string& identifier() const { return identifier_; }
  std::vector<std::shared_ptr<VADTiming>> timings() const;
  std::vector<std::string> categories() const;
  std::string userDefaultsKey() const;

  void loadPersistentTimings();
  void savePersistentTimings();
  void synchronize() { savePersistentTimings(); }

  /// A new timing in place of a former one of the category.
  std::shared_ptr<VADTiming> addTimingWithCategory(const std::string& category);
  /// Null is ignored.
  void addTiming(std::shared_ptr<VADTiming> timing);
  /// Null when there is none.
  std::shared_ptr<VADTiming> timingForCategory(const std::string& category) const;
  void removeTimingForCategory(const std::string& category);
  void removeTiming(const VADTiming& timing);
  void removeTimingsForCategories(const std::vector<std::string>& categories);
  void removeAllTimings();

 private:
  std::string identifier_;
  std::map<std::string, std::shared_ptr<VADTiming>> timings_;
};

}  // namespace valdren
