#include "ads/loading/VADScriptFreshness.h"

#include "ads/loading/VADAdURLBuilder.h"
#include "ads/telemetry/VADStatisticsCore.h"
#include "platform/base/Date.h"
#include "platform/base/MainThread.h"

namespace valdren {
namespace {

using platform::Date;

constexpr const char* kStore = "VADObjectPrivate";
constexpr const char* kExpireDateKey = "expireDate";
/// Since when a script is there that has answered nobody; gone with its first answer.
constexpr const char* kUnansweredSinceKey = "unansweredSince";

bool isBetween(const std::optional<platform::Value>& value, Date first, Date last) {
  const Date* const date = value ? value->date() : nullptr;
  return date && *date >= first && *date <= last;
}

}  // namespace

bool VADScriptFreshness::isFresh() {
  platform::assertMainThread();
  const VADStatisticsCore store(kStore);
  const Date now = Date::now();
  const auto unansweredSince = store.dateForKey(kUnansweredSinceKey);
  awaitsFirstAnswer_ = unansweredSince.has_value();
  const bool mayAnswer =
      !unansweredSince ||
      isBetween(unansweredSince, now.after(-VADAdURLBuilder::kBuildSeconds), now);
  // A date that lies further ahead was kept before the clock was set back.
  return mayAnswer && isBetween(store.dateForKey(kExpireDateKey), now, now.after(kLifetime));
}

void VADScriptFreshness::asked() {
  platform::assertMainThread();
  VADStatisticsCore store(kStore);
  const Date now = Date::now();
  store.setDate(platform::Value(now.after(kLifetime)), kExpireDateKey);
  store.setDate(platform::Value(now), kUnansweredSinceKey);
  store.synchronize();
  awaitsFirstAnswer_ = true;
}

void VADScriptFreshness::answered() {
  platform::assertMainThread();
  if (!awaitsFirstAnswer_) return;
  VADStatisticsCore(kStore).removeObjectForKey(kUnansweredSinceKey);
  awaitsFirstAnswer_ = false;
}

}  // namespace valdren
