#include "ads/signals/Signals.h"

#include <algorithm>
#include <deque>
#include <optional>

#include "ads/signals/SealedSignals.h"
#include "platform/Clock.h"
#include "platform/Json.h"

namespace valdren {
namespace {

constexpr std::size_t kMostTouches = 16;
constexpr std::size_t kLongestIdentifier = 256;

struct Touch {
  int x;
  int y;
  int duration;
  double seconds;  // since the ad was announced
};

/// All that is gathered: the ad at hand and the touches inside it.
struct Gathered {
  bool any = false;
  int requestType = 0;
  std::string sdkVersion;
  double announced = 0;
  std::deque<Touch> touches;
};

Gathered& gathered() {
  static Gathered signals;
  return signals;
}

int milliseconds(double seconds) {
  return static_cast<int>(std::clamp(seconds * 1000, 0.0, 2e9));
}

double now() {
  return platform::Clock::shared().monotonicSeconds();
}

platform::Dictionary contentOf(const Gathered& signals) {
  platform::Array touches;
  for (const Touch& touch : signals.touches) {
    touches.push_back(
        platform::Array{touch.x, touch.y, touch.duration, milliseconds(touch.seconds)});
  }
  return {{"type", signals.requestType},
          {"sdk", signals.sdkVersion},
          {"viewed", milliseconds(now() - signals.announced)},
          {"touches", std::move(touches)}};
}

int fill(std::string& text, const char* key, const platform::Dictionary& content) {
  const std::optional<std::string> sealed = sealSignals(content);
  if (!sealed) return 0;
  text = key + ("=" + *sealed);
  return 1;
}

}  // namespace

int vad_gig(int requestType, std::string_view sdkVersion) {
  Gathered& signals = gathered();
  // The touches stay until a request has carried them.
  signals.any = true;
  signals.requestType = requestType;
  signals.sdkVersion = sdkVersion;
  signals.announced = now();
  return 1;
}

int vad_gmrs(std::string& text) {
  Gathered& signals = gathered();
  if (!signals.any || !fill(text, kRequestSignalsKey, contentOf(signals))) return 0;
  signals.touches.clear();
  return 1;
}

int vad_gmcs(std::string_view adIdentifier, std::string& text) {
  platform::Dictionary content = contentOf(gathered());
  content.set("ai", adIdentifier.substr(0, kLongestIdentifier));
  return fill(text, kClickSignalsKey, content);
}

int vad_htg(int x, int y, int duration) {
  Gathered& signals = gathered();
  if (signals.touches.size() == kMostTouches) signals.touches.pop_front();
  signals.touches.push_back({x, y, duration, now() - signals.announced});
  return 1;
}

}  // namespace valdren
