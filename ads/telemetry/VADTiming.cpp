#include "ads/telemetry/VADTiming.h"

#include <cstdio>

#include "ads/support/VADMacros.h"
#include "platform/base/Clock.h"

namespace valdren {
namespace {

constexpr const char* kCategory = "category";
constexpr const char* kStart = "start";
constexpr const char* kEnd = "end";
constexpr const char* kUserData = "userData";

double numberIn(const platform::Dictionary& representation, const char* key) {
  const platform::Value* const value = representation.find(key);
  return value && value->isNumber() ? value->doubleValue() : 0;
}

/// Whole milliseconds as far as 32 bits go; what the kept state may hold must not break the sum.
std::uint32_t wholeMilliseconds(double seconds) {
  const double milliseconds = seconds * 1000;
  if (!(milliseconds > 0)) return 0;
  return milliseconds >= 4294967295.0 ? 4294967295U : static_cast<std::uint32_t>(milliseconds);
}

}  // namespace

double VADTiming::counter() {
  return platform::Clock::shared().monotonicTime().count();
}

std::shared_ptr<VADTiming> VADTiming::initWithDictionaryRepresentation(
    const platform::Dictionary& representation) {
  const std::string* const category = representation.text(kCategory);
  if (!category) return nullptr;
  auto timing = std::make_shared<VADTiming>(*category);
  timing->startSeconds_ = numberIn(representation, kStart);
  timing->endSeconds_ = numberIn(representation, kEnd);
  const platform::Value* const userData = representation.find(kUserData);
  if (userData && userData->dictionary()) timing->userData_ = *userData->dictionary();
  return timing;
}

std::shared_ptr<VADTiming> VADTiming::copy() const {
  return initWithDictionaryRepresentation(dictionaryRepresentation());
}

platform::Dictionary VADTiming::dictionaryRepresentation() const {
  platform::Dictionary representation{
      {kCategory, category_}, {kStart, startSeconds_}, {kEnd, endSeconds_}};
  if (userData_) representation.set(kUserData, *userData_);
  return representation;
}

void VADTiming::start() {
  startSeconds_ = counter();
  endSeconds_ = 0;
}

void VADTiming::end() {
  if (startSeconds_ > 0) endSeconds_ = counter();
}

void VADTiming::reset() {
  startSeconds_ = endSeconds_ = 0;
}

std::uint32_t VADTiming::elapsedMilliseconds() const {
  const double end = endSeconds_ < startSeconds_ ? counter() : endSeconds_;
  return wholeMilliseconds(end - startSeconds_);
}

std::string VADTiming::elapsedMillisecondsString() const {
  return std::to_string(elapsedMilliseconds());
}

void VADTiming::setValue(std::optional<platform::Value> value, std::string_view forKey) {
  if (!userData_) userData_.emplace();
  userData_->setIfPresent(forKey, std::move(value));
}

const platform::Value* VADTiming::valueForKey(std::string_view key) const {
  return userData_ ? userData_->find(key) : nullptr;
}

void VADTiming::removeValueForKey(std::string_view key) {
  if (userData_) userData_->remove(key);
}

platform::Dictionary VADTiming::keysAndValues() const {
  return userData_.value_or(platform::Dictionary());
}

std::string VADTiming::description() const {
  char address[32];
  std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
  return std::string("VADTiming (") + address +
         "): " + VADMacros::jsonify(dictionaryRepresentation());
}

}  // namespace valdren
