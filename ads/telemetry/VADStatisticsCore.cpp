#include "ads/telemetry/VADStatisticsCore.h"

#include "platform/storage/UserDefaults.h"

namespace valdren {

VADStatisticsCore::VADStatisticsCore(std::string identifier) : identifier_(std::move(identifier)) {
  loadPersistentStatistics();
}

VADStatisticsCore::~VADStatisticsCore() {
  savePersistentStatistics();
}

std::string VADStatisticsCore::userDefaultsKey() const {
  return "valdren_stats_" + identifier_;
}

void VADStatisticsCore::loadPersistentStatistics() {
  const auto kept = platform::UserDefaults::shared().objectForKey(userDefaultsKey());
  if (kept && kept->dictionary()) statistics_.merge(*kept->dictionary());
}

void VADStatisticsCore::savePersistentStatistics() {
  platform::UserDefaults::shared().setObject(userDefaultsKey(), statistics_);
  platform::UserDefaults::shared().synchronize();
}

void VADStatisticsCore::setObject(const std::optional<platform::Value>& object,
                                  std::string_view forKey, Kind matchingClass) {
  if (!object) return;
  const bool matches =
      matchingClass == Kind::Integer ? object->isNumber() : object->kind() == matchingClass;
  if (matches) statistics_.set(forKey, *object);
}

void VADStatisticsCore::setNumber(const std::optional<platform::Value>& number,
                                  std::string_view forKey) {
  setObject(number, forKey, Kind::Integer);
}

void VADStatisticsCore::setString(const std::optional<platform::Value>& string,
                                  std::string_view forKey) {
  setObject(string, forKey, Kind::Text);
}

void VADStatisticsCore::setDate(const std::optional<platform::Value>& date,
                                std::string_view forKey) {
  setObject(date, forKey, Kind::Date);
}

void VADStatisticsCore::setArray(const std::optional<platform::Value>& array,
                                 std::string_view forKey) {
  setObject(array, forKey, Kind::Array);
}

void VADStatisticsCore::setDictionary(const std::optional<platform::Value>& dictionary,
                                      std::string_view forKey) {
  setObject(dictionary, forKey, Kind::Dictionary);
}

std::optional<platform::Value> VADStatisticsCore::stored(std::string_view key) const {
  const platform::Value* const value = statistics_.find(key);
  return value ? std::optional(*value) : std::nullopt;
}

std::int32_t VADStatisticsCore::addValue(std::int32_t value, std::string_view numberForKey) {
  const platform::Value* const present = statistics_.find(numberForKey);
  const auto before = static_cast<std::uint32_t>(present ? present->integerValue() : 0);
  const auto sum = static_cast<std::int32_t>(before + static_cast<std::uint32_t>(value));
  statistics_.set(numberForKey, sum);
  return sum;
}

}  // namespace valdren
