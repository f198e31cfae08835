// Typed values that outlive the process.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren {

/// A named store in the user defaults. A setter whose value is absent or of another class does
/// nothing, so an absent value never removes an entry. Saved when asked to and when it is
/// destroyed.
class VADStatisticsCore {
 public:
  explicit VADStatisticsCore(std::string identifier);
  ~VADStatisticsCore();
  VADStatisticsCore(const VADStatisticsCore&) = delete;
  VADStatisticsCore& operator=(const VADStatisticsCore&) = delete;

  std::string userDefaultsKey() const;
  void loadPersistentStatistics();
  void savePersistentStatistics();
  void synchronize() { savePersistentStatistics(); }

  void setNumber(const std::optional<platform::Value>& number, std::string_view forKey);
  void setString(const std::optional<platform::Value>& string, std::string_view forKey);
  void setDate(const std::optional<platform::Value>& date, std::string_view forKey);
  void setArray(const std::optional<platform::Value>& array, std::string_view forKey);
  void setDictionary(const std::optional<platform::Value>& dictionary, std::string_view forKey);

  // What is stored, whatever its class; none when nothing is.
  std::optional<platform::Value> numberForKey(std::string_view key) const { return stored(key); }
  std::optional<platform::Value> stringForKey(std::string_view key) const { return stored(key); }
  std::optional<platform::Value> dateForKey(std::string_view key) const { return stored(key); }
  std::optional<platform::Value> arrayForKey(std::string_view key) const { return stored(key); }
  std::optional<platform::Value> dictionaryForKey(std::string_view key) const {
    return stored(key);
  }

  /// Adds to the number under the key (0 when there is none) and gives the sum, in 32 bits.
  std::int32_t addValue(std::int32_t value, std::string_view numberForKey);
  void removeObjectForKey(std::string_view key) { statistics_.remove(key); }
  void removeAllObjects() { statistics_.clear(); }

 private:
  using Kind = platform::Value::Kind;
  void setObject(const std::optional<platform::Value>& object, std::string_view forKey,
                 Kind matchingClass);
  std::optional<platform::Value> stored(std::string_view key) const;

  std::string identifier_;
  platform::Dictionary statistics_;
};

}  // namespace valdren
