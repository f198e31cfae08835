#include "ads/signals/Signals.h"

#include <algorithm>
#include <deque>
#include <optional>

#include "ads/protocol/Parameters.h"
#include "ads/signals/EncryptedSignals.h"
#include "platform/base/Clock.h"
#include "platform/base/Text.h"

namespace valdren {
namespace {

constexpr std::size_t kMostTouches = 16;
constexpr std::size_t kLongestIdentifier = 256;

struct Touch {
  int x;
  int y;
  int duration;
  int milliseconds;  // since the ad was announced
};

/// What the person did with one ad.
struct View {
  int requestType = 0;
  std::string sdkVersion;
  std::optional<double> announced;
  std::deque<Touch> touches;
};

/// All that is gathered: the ad at hand, and what a request tells of the one before it.
struct Gathered {
  View present;
  int formerViewed = 0;
  std::deque<Touch> formerTouches;
};

Gathered& gathered() {
  static Gathered signals;
  return signals;
}

int milliseconds(double seconds) {
  return static_cast<int>(std::clamp(seconds * 1000, 0.0, 2e9));
}

double now() {
  return platform::Clock::shared().monotonicTime().count();
}

int viewed(const View& view) {
  return view.announced ? milliseconds(now() - *view.announced) : 0;
}

platform::Dictionary contentOf(const View& view, int viewedFor, const std::deque<Touch>& touches) {
  platform::Array list;
  for (const Touch& touch : touches) {
    list.push_back(platform::Array{touch.x, touch.y, touch.duration, touch.milliseconds});
  }
  return {{"type", view.requestType},
          {"sdk", view.sdkVersion},
          {"viewed", viewedFor},
          {"touches", std::move(list)}};
}

int fill(std::string& text, const char* key, const platform::Dictionary& content) {
  const std::optional<std::string> encrypted = encryptSignals(content);
  if (!encrypted) return 0;
  text = key + ("=" + *encrypted);
  return 1;
}

}  // namespace

int vad_gig(int requestType, std::string_view sdkVersion) {
  Gathered& signals = gathered();
  signals.formerViewed = viewed(signals.present);
  signals.formerTouches = std::move(signals.present.touches);
  signals.present = {requestType, std::string(sdkVersion), now(), {}};
  return 1;
}

int vad_gmrs(std::string& text) {
  const Gathered& signals = gathered();
  if (!signals.present.announced) return 0;
  return fill(text, kVADQueryRequestSignals,
              contentOf(signals.present, signals.formerViewed, signals.formerTouches));
}

int vad_gmcs(std::string_view adIdentifier, std::string& text) {
  const View& present = gathered().present;
  platform::Dictionary content = contentOf(present, viewed(present), present.touches);
  content.set(kVADQueryAdIdentifier,
              platform::repairedUTF8(adIdentifier.substr(0, kLongestIdentifier)));
  return fill(text, kVADQueryClickSignals, content);
}

int vad_htg(int x, int y, int duration) {
  View& present = gathered().present;
  if (present.touches.size() == kMostTouches) present.touches.pop_front();
  present.touches.push_back({x, y, duration, viewed(present)});
  return 1;
}

}  // namespace valdren
