#include "sandbox/Ads.h"

#include <algorithm>

#include "sandbox/Pages.h"

namespace sandbox {
namespace {

// Colours: start and end of the background, the text, and the text on a button of that colour.
constexpr std::string_view kTeal = "--from: #0d4f4a; --to: #14736a; --ink: #eafff9; --on: #0b423d;";
constexpr std::string_view kPlum = "--from: #4a1c54; --to: #7a2f6f; --ink: #ffeefb; --on: #4a1c54;";
constexpr std::string_view kNavy = "--from: #14284f; --to: #24508f; --ink: #eef5ff; --on: #14284f;";
constexpr std::string_view kRust = "--from: #6d2412; --to: #a5451d; --ink: #fff3e8; --on: #6d2412;";
constexpr std::string_view kMoss = "--from: #26401a; --to: #45692a; --ink: #f4ffe8; --on: #26401a;";
constexpr std::string_view kSand = "--from: #f3e3c3; --to: #ecd19d; --ink: #45320f; --on: #fff6e2;";
constexpr std::string_view kSlate =
    "--from: #27303d; --to: #42526a; --ink: #f2f6fb; --on: #27303d;";
constexpr std::string_view kRose = "--from: #fde3e4; --to: #f7bfc4; --ink: #6b1526; --on: #fff0f1;";

constexpr std::string_view kGlobe =
    "M12 2a10 10 0 1 0 .01 0M2 12h20M12 2c-5.5 6-5.5 14 0 20c5.5-6 5.5-14 0-20";
constexpr std::string_view kTiles = "M4 4h6v6H4zM14 4h6v6h-6zM4 14h6v6H4zM14 14h6v6h-6z";
constexpr std::string_view kBrackets = "M8 7l-5 5 5 5M16 7l5 5-5 5M13.5 5l-3 14";
constexpr std::string_view kPlay = "M7 4l13 8-13 8z";
constexpr std::string_view kPhone =
    "M5 3h4l2 5-2.5 2a12 12 0 0 0 5.5 5.5L16 13l5 2v4a2 2 0 0 1-2 2A16 16 0 0 1 3 5a2 2 0 0 1 "
    "2-2z";
constexpr std::string_view kPin =
    "M12 22s7-7 7-13a7 7 0 0 0-14 0c0 6 7 13 7 13zM12 6.5a2.5 2.5 0 1 0 .01 0";
constexpr std::string_view kBag = "M5 8h14l1 13H4zM8.5 8a3.5 3.5 0 0 1 7 0";
constexpr std::string_view kEnvelope = "M3 5h18v14H3zM3 6l9 7 9-7";
constexpr std::string_view kBubble = "M4 4h16v12H10l-5 4v-4H4z";
constexpr std::string_view kLink =
    "M10 14a4 4 0 0 0 6 0l3-3a4.2 4.2 0 0 0-6-6l-1.5 1.5M14 10a4 4 0 0 0-6 0l-3 3a4.2 4.2 "
    "0 0 0 6 6l1.5-1.5";
constexpr std::string_view kTarget = "M12 3a9 9 0 1 0 .01 0M12 8a4 4 0 1 0 .01 0";
constexpr std::string_view kClock = "M12 3a9 9 0 1 0 .01 0M12 7v5l4 2";
constexpr std::string_view kWarning = "M12 3l10 18H2zM12 10v5M12 18v.1";
constexpr std::string_view kLock = "M5 11h14v10H5zM8 11V7a4 4 0 0 1 8 0v4";

constexpr std::string_view kInlineApp =
    "{a: 'webapp', o: 'l', html: '<!DOCTYPE html><html lang=\"en\"><meta name=\"viewport\" "
    "content=\"width=device-width\"><title>Pocket Garden</title><body "
    "style=\"margin:0;display:grid;"
    "place-content:center;gap:1em;min-height:100vh;text-align:center;background:#26401a;color:"
    "#f4ffe8;font:20px/1.4 system-ui,sans-serif\"><h1 style=\"margin:0\">Pocket Garden</h1><p "
    "style=\"margin:0\">This page came inside the ad.</p><a style=\"color:inherit\" "
    "href=\"gmsg://urvo/close\">Close</a><a style=\"color:inherit\" href=\"gmsg://urvo/evalInOpener"
    "?js=document.body.style.filter%3D%22invert(1)%22\">Turn the colours of the ad round</a>"
    "</body></html>'}";

constexpr Ad kAds[] = {
    {.name = "harbour",
     .title = "Harbour Roast, a still picture",
     .opens = "a link, in the in-app browser",
     .page = "harbour.html",
     .inTurn = true},
    {.name = "lantern",
     .title = "Lantern Night, moving",
     .opens = "a web app by message, upright only",
     .page = "lantern.html",
     .inTurn = true},
    {.name = "alpine",
     .title = "Alpenglow Rail, drawn as vectors",
     .opens = "a link, as a web app because clicks are tracked",
     .page = "alpine.html",
     .inTurn = true,
     .clickURLs = true},
    {.name = "marginalia",
     .title = "Marginalia, light and dark",
     .opens = "a link that carries the click's signals",
     .page = "marginalia.html",
     .inTurn = true},
    {.name = "console",
     .title = "Message console",
     .opens = "whatever is chosen: every message of the bridge",
     .page = "console.html"},
    {.name = "browser",
     .title = "Open: browser",
     .opens = "the in-app browser, upright only",
     .brand = "Fernweh Atlas",
     .line = "Maps for slow travel",
     .button = "Read on",
     .icon = kGlobe,
     .theme = kTeal,
     .open = "{a: 'browser', u: base + '/land/plain?t=' + ticket + '&ai=' + ticket, o: 'p'}"},
    {.name = "webapp",
     .title = "Open: web app",
     .opens = "the web app screen, any way up",
     .brand = "Tidepool",
     .line = "A tiny sea to look after",
     .button = "Play",
     .icon = kTiles,
     .theme = kNavy,
     .open = "{a: 'webapp', u: base + '/land/webapp?t=' + ticket + '&ai=' + ticket}"},
    {.name = "webapp-html",
     .title = "Open: web app from inline HTML",
     .opens = "the web app screen, sideways only",
     .brand = "Pocket Garden",
     .line = "Grows while you wait",
     .button = "Plant it",
     .icon = kBrackets,
     .theme = kMoss,
     .open = kInlineApp},
    {.name = "video",
     .title = "Open: video",
     .opens = "a video in the in-app browser",
     .clickURLs = true,
     .brand = "Night Bus",
     .line = "The film, in four seconds",
     .button = "Watch",
     .icon = kPlay,
     .theme = kPlum,
     .open = "{a: 'video', u: base + '/land/video?t=' + ticket}",
     .pings = false},
    {.name = "call",
     .title = "Open: call",
     .opens = "the telephone",
     .clickURLs = true,
     .brand = "Corner Bakery",
     .line = "Order before noon",
     .button = "Call us",
     .icon = kPhone,
     .theme = kRust,
     .open = "{a: 'call', u: 'tel:+15550100'}",
     .pings = false},
    {.name = "app",
     .title = "Open: another application",
     .opens = "whatever handles geo: addresses",
     .clickURLs = true,
     .brand = "Old Town Walks",
     .line = "Start at the fountain",
     .button = "Show map",
     .icon = kPin,
     .theme = kSand,
     .open = "{a: 'app', u: 'geo:47.3717,8.5423'}",
     .pings = false},
    {.name = "store",
     .title = "A store link",
     .opens = "the store",
     .clickURLs = true,
     .brand = "Loomlight",
     .line = "Weave patterns of light",
     .button = "Get it",
     .icon = kBag,
     .theme = kSlate,
     .href = "itms-apps://store.example/app/id4711",
     .pings = false},
    {.name = "mail",
     .title = "A mail link",
     .opens = "the mail composer, filled in",
     .brand = "Letterpress Club",
     .line = "Write us, we write back",
     .button = "Write",
     .icon = kEnvelope,
     .theme = kRose,
     .href =
         "mailto:hello@letterpress.example?cc=press@letterpress.example,club@letterpress.example"
         "&amp;subject=A%20letter&amp;body=Dear%20club%2C"},
    {.name = "sms",
     .title = "A text message link",
     .opens = "the text messages",
     .brand = "Ferry Times",
     .line = "Next boat by text",
     .button = "Text us",
     .icon = kBubble,
     .theme = kNavy,
     .href = "sms:+15550101"},
    {.name = "link",
     .title = "A plain link",
     .opens = "a link, in the in-app browser",
     .brand = "Second Shelf",
     .line = "Books with a past",
     .button = "Browse",
     .icon = kLink,
     .theme = kMoss,
     .href = "{{base}}/land/plain?t={{ticket}}"},
    {.name = "signals",
     .title = "A link with \"ai\"",
     .opens = "a link that carries the click's signals, as a web app",
     .clickURLs = true,
     .brand = "Stargazers",
     .line = "Tonight: clear until two",
     .button = "Look up",
     .icon = kTarget,
     .theme = kPlum,
     .href = "{{base}}/land/webapp?t={{ticket}}&amp;ai={{ticket}}"},
    {.name = "landing-slow",
     .title = "A slow landing page",
     .opens = "a page that takes eight seconds",
     .brand = "Snail Mail",
     .line = "Worth the wait",
     .button = "Wait",
     .icon = kClock,
     .theme = kSlate,
     .open = "{a: 'browser', u: base + '/land/slow?t=' + ticket}"},
    {.name = "landing-failing",
     .title = "A landing page that fails",
     .opens = "a connection that is cut",
     .brand = "Broken Bridge",
     .line = "Ends in the middle",
     .button = "Cross",
     .icon = kWarning,
     .theme = kRust,
     .open = "{a: 'browser', u: base + '/land/cut?t=' + ticket}"},
    {.name = "landing-store",
     .title = "A landing page that leads to the store",
     .opens = "a redirect to a store link",
     .brand = "Detour",
     .line = "Round the corner, then in",
     .button = "Follow",
     .icon = kBag,
     .theme = kTeal,
     .open = "{a: 'browser', u: base + '/land/to-store?t=' + ticket}"},
    {.name = "landing-certificate",
     .title = "A landing page with a bad certificate",
     .opens = "a secure page that nobody should trust",
     .brand = "Trust Me Bank",
     .line = "Signed by ourselves",
     .button = "Log in",
     .icon = kLock,
     .theme = kSand,
     .open = "{a: 'browser', u: base + '/land/secure?t=' + ticket}"},
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

const Ad& adInTurn(std::size_t turn) {
  const auto inTurn = [](const Ad& each) { return each.inTurn; };
  const auto count = std::count_if(std::begin(kAds), std::end(kAds), inTurn);
  auto left = static_cast<std::ptrdiff_t>(turn % static_cast<std::size_t>(count));
  return *std::find_if(std::begin(kAds), std::end(kAds),
                       [&](const Ad& each) { return each.inTurn && left-- == 0; });
}

std::string htmlOf(const Ad& ad, const Placement& placement) {
  const std::string content = filled(page(ad.page), {{"brand", ad.brand},
                                                     {"line", ad.line},
                                                     {"button", ad.button},
                                                     {"icon", ad.icon},
                                                     {"theme", ad.theme},
                                                     {"href", ad.href},
                                                     {"open", ad.open},
                                                     {"pings", ad.pings ? "true" : "false"}});
  return filledFor(content, placement);
}

std::string htmlOf(std::string_view name, const Placement& placement) {
  return filledFor(page(name), placement);
}

std::string filledFor(std::string_view content, const Placement& placement) {
  return filled(content, {{"base", placement.base},
                          {"secure", placement.secureBase},
                          {"ticket", placement.ticket},
                          {"style", page("land.css")},
                          {"bridge", page("bridge.js")}});
}

}  // namespace sandbox
