#include "sandbox/AdNetwork.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "ads/protocol/Headers.h"
#include "ads/protocol/Parameters.h"
#include "ads/protocol/Script.h"
#include "platform/base/HTTPDate.h"
#include "platform/base/Json.h"
#include "platform/base/PercentEncoding.h"
#include "sandbox/Landing.h"
#include "sandbox/Pages.h"

namespace platform = valdren::platform;

namespace sandbox {
namespace {

constexpr const char* kJson = "application/json; charset=utf-8";
constexpr const char* kScript = "text/javascript; charset=utf-8";
constexpr std::string_view kScenarioUnit = "scenario-";
constexpr std::string_view kAdUnit = "ad-";
constexpr std::string_view kInterstitialSeconds = "5";

/// Seconds since 1970. Uses the machine's clock, because tests may change the application's.
double now() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

int numberFrom(const std::optional<std::string>& text) {
  int number = 0;
  if (text) std::from_chars(text->data(), text->data() + text->size(), number);
  return number;
}

std::string jsonText(const platform::Value& value) {
  return platform::writeJson(value).value_or("null");
}

Answer json(std::string text) {
  return {
      .contentType = kJson, .body = std::move(text), .headers = {{"Cache-Control", "no-store"}}};
}

Answer plain(int status, std::string text) {
  return {.status = status, .contentType = "text/plain; charset=utf-8", .body = std::move(text)};
}

Answer file(std::string_view name, std::string contentType) {
  return {.contentType = std::move(contentType),
          .body = page(name),
          .headers = {{"Cache-Control", "no-cache"}}};
}

std::string_view kindOf(std::string_view path) {
  if (path == valdren::kVADScriptPath) return "script";
  if (path == "/choice.json") return "choice";
  if (path == "/ad") return "ad";
  if (path == "/hop") return "hop";
  if (path.starts_with("/imp/")) return "impression";
  if (path.starts_with("/clk/")) return "click";
  if (path.starts_with("/land/")) return "landing";
  return "other";
}

/// Removes "/as/NAME" from the path and returns the name.
std::string cutScenario(std::string& path) {
  constexpr std::string_view kPrefix = "/as/";
  if (!path.starts_with(kPrefix)) return {};
  const std::size_t end = std::min(path.find('/', kPrefix.size()), path.size());
  std::string name = decoded(std::string_view(path).substr(0, end).substr(kPrefix.size()));
  path.erase(0, end);
  if (path.empty()) path = "/";
  return name;
}

const Scenario* scenarioOfUnit(std::string_view slot) {
  return slot.starts_with(kScenarioUnit) ? scenarioNamed(slot.substr(kScenarioUnit.size()))
                                         : nullptr;
}

/// Keeps letters, digits and "-" only, so that the ticket is safe in headers and pages.
std::string ticketFrom(std::string text) {
  std::erase_if(text, [](unsigned char letter) { return !std::isalnum(letter) && letter != '-'; });
  return text.substr(0, 40);
}

std::string lastOf(std::string_view path) {
  return decoded(path.substr(path.rfind('/') + 1));
}

/// Whether the request names this machine as its host. Another site may point its own name here to
/// read the answers.
bool isAddressedToLoopback(const Request& request) {
  std::string host = request.header("Host");
  const std::size_t colon = host.rfind(':');
  if (colon != std::string::npos && host.find(']', colon) == std::string::npos) host.resize(colon);
  return host == "127.0.0.1" || host == "localhost" || host == "[::1]";
}

/// The answer to a ping shows nothing.
Answer ping() {
  return {.contentType = "text/plain", .headers = {{"Cache-Control", "no-store"}}};
}

}  // namespace

AdNetwork::AdNetwork() : started_(std::floor(now())), scenario_(&scenarios().front()) {}

void AdNetwork::setBases(std::string base, std::string secureBase) {
  const std::lock_guard lock(mutex_);
  base_ = std::move(base);
  secureBase_ = std::move(secureBase);
}

bool AdNetwork::setScenario(std::string_view name) {
  const std::lock_guard lock(mutex_);
  const Scenario* found = scenarioNamed(name);
  if (found) scenario_ = found;
  return found;
}

bool AdNetwork::setAd(std::string_view name) {
  const std::lock_guard lock(mutex_);
  const Ad* found = adNamed(name);
  if (found || name.empty()) ad_ = found;
  return found || name.empty();
}

void AdNetwork::setRefreshRate(platform::Seconds rate) {
  const std::lock_guard lock(mutex_);
  refreshSeconds_ = rate.count();
}

std::string AdNetwork::log(std::uint64_t since) const {
  const std::lock_guard lock(mutex_);
  return logText(since);
}

std::string AdNetwork::logText(std::uint64_t since) const {
  return jsonText(platform::Dictionary{
      {"started", started_},
      {"now", now()},
      {"last", static_cast<std::int64_t>(log_.last())},
      {"scenario", scenario_->name},
      {"ad", ad_ ? ad_->name : ""},
      {"refresh", refreshSeconds_},
      {"counts", log_.counts()},
      {"requests", log_.after(since)},
  });
}

std::string AdNetwork::catalogue() const {
  platform::Array all;
  for (const Scenario& each : scenarios()) {
    all.push_back(platform::Dictionary{{"name", each.name},
                                       {"does", each.does},
                                       {"expected", each.expected},
                                       {"actor", nameOf(each.actor)}});
  }
  platform::Array served;
  for (const Ad& each : ads()) {
    served.push_back(
        platform::Dictionary{{"name", each.name}, {"title", each.title}, {"opens", each.opens}});
  }
  return jsonText(platform::Dictionary{{"scenarios", all}, {"ads", served}});
}

Answer AdNetwork::handle(const Request& request) {
  if (!isAddressedToLoopback(request)) return plain(403, "This server is for this machine only.\n");
  const std::lock_guard lock(mutex_);
  Call call{.request = request, .base = base_};
  const std::string name = cutScenario(call.request.path);
  if (!name.empty()) {
    call.scenario = scenarioNamed(name);
    call.base += "/as/" + platform::percentEncoded(name);
  }
  if (std::optional<Answer> own = ownPage(call.request)) return *std::move(own);

  Seen seen;
  seen.time = now();
  seen.kind = kindOf(call.request.path);
  Answer answer = this->answer(call, seen);
  seen.request = std::move(call.request);
  seen.request.path = request.path;
  seen.status = answer.status;
  log_.add(std::move(seen));
  return answer;
}

/// The inspector's pages and data. These requests are not logged.
std::optional<Answer> AdNetwork::ownPage(const Request& request) {
  const std::string& path = request.path;
  if (path == "/control") return control(request);
  if (path == "/") return file("inspector.html", "text/html; charset=utf-8");
  if (path == "/inspector.css") return file("inspector.css", "text/css; charset=utf-8");
  if (path == "/inspector.js") return file("inspector.js", kScript);
  if (path == "/favicon.ico") return file("icon.svg", "image/svg+xml");
  if (path == "/scenarios.json") return json(catalogue());
  if (path == "/log.json") {
    const int since = numberFrom(request.parameter("since"));
    return json(logText(static_cast<std::uint64_t>(std::max(since, 0))));
  }
  if (path.starts_with("/preview/")) {
    const Ad* ad = adNamed(lastOf(path));
    if (!ad) return plain(404, "There is no such ad.\n");
    return Answer{.body = htmlOf(*ad, {base_, secureBase_, "preview"})};
  }
  return std::nullopt;
}

Answer AdNetwork::answer(Call& call, Seen& seen) {
  const std::string& path = call.request.path;
  if (seen.kind == "script") return scriptAnswer(call, seen);
  if (seen.kind == "choice") return choiceAnswer(call, seen);
  if (seen.kind == "ad" || seen.kind == "hop") return adAnswer(call, seen);
  if (seen.kind == "impression" || seen.kind == "click") {
    seen.ticket = ticketFrom(lastOf(path));
    return ping();
  }
  if (seen.kind == "landing") {
    seen.ticket = ticketFrom(call.request.parameter("t").value_or(""));
    return landingAnswer(call.request, {call.base, secureBase_, seen.ticket});
  }
  return plain(404, "There is nothing here.\n");
}

Answer AdNetwork::scriptAnswer(const Call& call, Seen& seen) {
  const auto modified = platform::httpDateText(platform::Date(started_));
  const Scenario& scenario = call.scenario ? *call.scenario : *scenario_;
  Plan plan;
  plan.fill = [&] {
    return Answer{.contentType = kScript,
                  .body = page("sdk-core.js"),
                  .headers = {{"Last-Modified", modified}, {"Cache-Control", "no-cache"}}};
  };
  if (scenario.actor == Actor::ScriptHost) {
    seen.scenario = scenario.name;
    return scenario.answer(plan);
  }
  const auto known = platform::dateFromHTTPText(call.request.header("If-Modified-Since"));
  if (!known || known->secondsSince1970() < started_) return plan.fill();
  return {.status = 304, .contentType = "", .headers = {{"Last-Modified", modified}}};
}

Answer AdNetwork::choiceAnswer(const Call& call, Seen& seen) {
  const Scenario& scenario = call.scenario ? *call.scenario : *scenario_;
  seen.scenario = scenario.name;
  return json(jsonText(platform::Dictionary{{"scenario", scenario.name}}));
}

Answer AdNetwork::adAnswer(const Call& call, Seen& seen) {
  const std::string slot = call.request.parameter(valdren::kVADParameterSlotName).value_or("");
  const Scenario* named = call.scenario ? call.scenario : scenarioOfUnit(slot);
  const Scenario* scenario = named ? named : scenario_;
  // An ad unit that names its ad gets that ad, and scenarios of other stages do not apply here.
  if (scenario->actor != Actor::AdServer || (!named && slot.starts_with(kAdUnit))) {
    scenario = &scenarios().front();
  }
  const bool isHop = seen.kind == "hop";
  seen.scenario = scenario->name;
  seen.ticket = isHop ? ticketFrom(call.request.parameter("ticket").value_or("")) : newTicket();

  const Placement placement{call.base, secureBase_, seen.ticket};
  Plan plan;
  plan.base = call.base;
  plan.ticket = seen.ticket;
  plan.hop = isHop ? std::clamp(numberFrom(call.request.parameter("n")), 0, 1000) : 0;
  plan.nextHop = call.base + "/hop?n=" + std::to_string(plan.hop + 1) + "&ticket=" + seen.ticket +
                 "&" + valdren::kVADParameterSlotName + "=" + platform::percentEncoded(slot);
  plan.fill = [&] {
    const Ad& ad = nextAd(slot);
    seen.ad = ad.name;
    return fill(ad, placement);
  };
  plan.hostile = [&](std::string_view name) {
    seen.ad = name.substr(0, name.find('.'));
    Answer answer = fill(ads().front(), placement);
    answer.body = htmlOf(name, placement);
    return answer;
  };
  return scenario->answer(plan);
}

Answer AdNetwork::fill(const Ad& ad, const Placement& placement) const {
  const std::string impression = placement.base + "/imp/" + placement.ticket;
  Answer answer;
  answer.body = htmlOf(ad, placement);
  const auto add = [&answer](std::string_view name, std::string_view value) {
    answer.headers.emplace_back(name, value);
  };
  add("Cache-Control", "no-store");
  add(valdren::kVADHeaderTrackingURLs, impression + " " + impression + "?for=advertiser");
  add(valdren::kVADHeaderOrientation, ad.orientation);
  add(valdren::kVADHeaderInterstitialTimeout, kInterstitialSeconds);
  if (ad.clickURLs) {
    add(valdren::kVADHeaderClickTrackingURLs, placement.base + "/clk/" + placement.ticket);
  }
  if (refreshSeconds_ > 0) {
    char seconds[32];
    const auto end = std::to_chars(seconds, seconds + sizeof seconds, refreshSeconds_).ptr;
    add(valdren::kVADHeaderRefreshRate, std::string_view(seconds, end));
  }
  return answer;
}

const Ad& AdNetwork::nextAd(std::string_view slot) {
  if (slot.starts_with(kAdUnit)) {
    if (const Ad* named = adNamed(slot.substr(kAdUnit.size()))) return *named;
  }
  return ad_ ? *ad_ : adInTurn(turn_++);
}

std::string AdNetwork::newTicket() {
  char text[48];
  std::snprintf(text, sizeof text, "t%llu-%04x", static_cast<unsigned long long>(++tickets_),
                static_cast<unsigned>(random_() & 0xffff));
  return text;
}

Answer AdNetwork::control(const Request& request) {
  if (request.method != "POST") return plain(405, "Use POST.\n");
  // Pages of other sites must not change settings here.
  const std::string origin = request.header("Origin");
  if (!origin.empty() && origin != "http://" + request.header("Host")) {
    return plain(403, "Only the inspector's own page may do that.\n");
  }
  if (const auto name = request.parameter("scenario")) {
    const Scenario* found = scenarioNamed(*name);
    if (!found) return plain(400, "There is no such scenario.\n");
    scenario_ = found;
  }
  if (const auto name = request.parameter("ad")) {
    const Ad* found = adNamed(*name);
    if (!found && !name->empty()) return plain(400, "There is no such ad.\n");
    ad_ = found;
  }
  if (const auto seconds = request.parameter("refresh")) {
    refreshSeconds_ = std::clamp(platform::Value(*seconds).doubleValue(), 0.0, 86400.0);
  }
  if (request.parameter("clear")) log_.clear();
  return json(logText(log_.last()));
}

}  // namespace sandbox
