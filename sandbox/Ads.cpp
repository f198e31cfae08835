#include "sandbox/Ads.h"

#include <algorithm>

#include "sandbox/Pages.h"

namespace sandbox {
namespace {

constexpr Ad kAds[] = {
    {.name = "harbour",
     .title = "Harbour Roast, a still picture",
     .opens = "browser, by a link",
     .page = "harbour.html"},
};

}  // namespace

std::span<const Ad> ads() {
  return kAds;
}

const Ad* adNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(kAds), std::end(kAds),
                                   [name](const Ad& each) { return each.name == name; });
  return found == std::end(kAds) ? nullptr : found;
}

std::string htmlOf(const Ad& ad, const Placement& placement) {
  const std::string content = filled(page(ad.page), {{"brand", ad.brand},
                                                     {"line", ad.line},
                                                     {"button", ad.button},
                                                     {"theme", ad.theme},
                                                     {"action", ad.action},
                                                     {"bridge", page("bridge.js")}});
  return filled(
      content,
      {{"base", placement.base}, {"secure", placement.secureBase}, {"ticket", placement.ticket}});
}

std::string htmlOf(std::string_view name, const Placement& placement) {
  return htmlOf(Ad{.name = {}, .title = {}, .opens = {}, .page = name}, placement);
}

}  // namespace sandbox
