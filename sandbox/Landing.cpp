#include "sandbox/Landing.h"

#include <algorithm>
#include <utility>

#include "sandbox/Pages.h"

namespace platform = valdren::platform;

namespace sandbox {
namespace {

constexpr platform::Seconds kSlowSeconds{8};

struct Place {
  std::string_view name;
  Answer (*answer)(const Placement& placement);
};

Answer message(const Placement& placement, int status, std::string_view title,
               std::string_view text) {
  const std::string content = filled(page("land-message.html"), {{"title", title}, {"text", text}});
  return {.status = status, .body = filledFor(content, placement)};
}

Answer shown(std::string_view name, const Placement& placement) {
  return {.body = htmlOf(name, placement)};
}

Answer redirect(std::string to) {
  return {.status = 302, .contentType = "", .headers = {{"Location", std::move(to)}}};
}

Answer with(Answer answer, Ending ending, platform::Seconds delay = platform::Seconds(0)) {
  answer.ending = ending;
  answer.delay = delay;
  return answer;
}

constexpr Place kPlaces[] = {
    {"plain", [](const Placement& at) { return shown("land-plain.html", at); }},
    {"webapp", [](const Placement& at) { return shown("land-webapp.html", at); }},
    {"video", [](const Placement& at) { return shown("land-video.html", at); }},
    {"clip.webm",
     [](const Placement&) {
       return Answer{.contentType = "video/webm", .body = page("clip.webm")};
     }},
    {"slow",
     [](const Placement& at) {
       return with(message(at, 200, "Slow drip", "It took eight seconds to get here."),
                   Ending::Whole, kSlowSeconds);
     }},
    {"trickle",
     [](const Placement& at) { return with(shown("land-plain.html", at), Ending::Dribble); }},
    {"failing",
     [](const Placement& at) {
       return message(at, 500, "Out of order", "The shop's machine has broken down.");
     }},
    {"missing",
     [](const Placement& at) { return message(at, 404, "Not here", "This page has moved out."); }},
    {"cut", [](const Placement&) { return with({}, Ending::CutBeforeHeaders); }},
    {"hang", [](const Placement&) { return with({}, Ending::Hang); }},
    {"endless",
     [](const Placement&) { return with({.body = "<p>And on and on.</p>"}, Ending::Endless); }},
    {"loop", [](const Placement& at) { return redirect(at.base + "/land/loop?t=" + at.ticket); }},
    {"to-store", [](const Placement&) { return redirect("itms-apps://store.example/app/id4711"); }},
    {"secure",
     [](const Placement& at) {
       if (at.secureBase.empty()) {
         return message(at, 503, "No TLS here", "This machine offers no secure connections.");
       }
       return redirect(at.secureBase + "/land/plain?t=" + at.ticket);
     }},
};

}  // namespace

Answer landingAnswer(const Request& request, const Placement& placement) {
  const std::string& path = request.path;
  const std::string name = decoded(std::string_view(path).substr(path.rfind('/') + 1));
  const auto* place = std::find_if(std::begin(kPlaces), std::end(kPlaces),
                                   [&](const Place& each) { return each.name == name; });
  if (place == std::end(kPlaces)) {
    return message(placement, 404, "Nowhere", "There is no such page.");
  }
  // Links on a secure page lead to secure pages.
  Placement here = placement;
  if (request.secure) here.base = placement.secureBase;
  return place->answer(here);
}

}  // namespace sandbox
