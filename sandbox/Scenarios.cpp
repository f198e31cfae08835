#include "sandbox/Scenarios.h"

#include <algorithm>

#include "ads/protocol/Headers.h"

namespace platform = valdren::platform;

namespace sandbox {
namespace {

using valdren::kVADHeaderClickTrackingURLs;
using valdren::kVADHeaderRefreshRate;
using valdren::kVADHeaderTrackingURLs;

constexpr int kLastHop = 3;
constexpr const char* kText = "text/plain; charset=utf-8";

Answer status(int code) {
  return {.status = code, .contentType = kText, .body = "The sandbox was set to this answer.\n"};
}

Answer with(Answer answer, Ending ending, platform::Seconds delay = platform::Seconds(0)) {
  answer.ending = ending;
  answer.delay = delay;
  return answer;
}

Answer redirect(std::string to) {
  Answer answer = status(302);
  answer.headers = {{"Location", std::move(to)}};
  return answer;
}

Answer with(Answer answer, std::string_view header, std::string value) {
  std::erase_if(answer.headers, [header](const auto& field) { return field.first == header; });
  answer.headers.emplace_back(header, std::move(value));
  return answer;
}

Answer fill(const Plan& plan) {
  return plan.fill();
}

Answer redirectChain(const Plan& plan) {
  if (plan.hop >= kLastHop) return plan.fill();
  Answer answer = redirect(plan.nextHop);
  const std::string hop = "?hop=" + std::to_string(plan.hop);
  answer.headers.emplace_back(kVADHeaderTrackingURLs, plan.base + "/imp/" + plan.ticket + hop);
  answer.headers.emplace_back(kVADHeaderClickTrackingURLs, plan.base + "/clk/" + plan.ticket + hop);
  return answer;
}

/// The page with bytes that are not UTF-8, which a client must refuse.
Answer spoiled(const Plan& plan, std::string_view contentType, std::string_view bytes) {
  Answer answer = plan.fill();
  answer.contentType = contentType;
  answer.body.insert(answer.body.rfind("</body>"), "<p>" + std::string(bytes) + "</p>");
  return answer;
}

Answer manyTrackers(const Plan& plan) {
  std::string list;
  for (int each = 0; each < 1000; ++each) {
    list += plan.base + "/imp/" + plan.ticket + "?n=" + std::to_string(each) + "  ";
  }
  return with(plan.fill(), kVADHeaderTrackingURLs, list);
}

Answer badTrackers(const Plan& plan) {
  return with(plan.fill(), kVADHeaderTrackingURLs,
              "   not[a]url http:// javascript:alert(1) file:///etc/hostname  " + plan.base +
                  "/imp/" + plan.ticket + " ");
}

std::string large() {
  std::string body = "<!DOCTYPE html><html><body><p>Five megabytes.</p><!--";
  body.append(std::size_t{5} * 1024 * 1024, '.');
  return body + "--></body></html>";
}

const Scenario kScenarios[] = {
    {"fill", "An ad, with all five response headers.",
     "The ad is shown and counted; the next comes after the refresh rate.", Actor::AdServer, fill},
    {"no-fill", "Only white space, of many kinds.", "Error 1; the refresh is still armed.",
     Actor::AdServer,
     [](const Plan& plan) {
       Answer answer = plan.fill();
       answer.body = " \r\n\t\u00a0\u3000\n";
       return answer;
     }},
    {"status-204", "Status 204, nothing to show.", "Error 2.", Actor::AdServer,
     [](const Plan&) { return Answer{.status = 204, .contentType = ""}; }},
    {"status-399", "Status 399, which means nothing.", "Error 2.", Actor::AdServer,
     [](const Plan&) { return status(399); }},
    {"status-400", "Status 400.", "Error 0 and a line about the ad unit ID.", Actor::AdServer,
     [](const Plan&) { return status(400); }},
    {"status-401", "Status 401.", "Error 3.", Actor::AdServer,
     [](const Plan&) { return status(401); }},
    {"status-500", "Status 500, with a refresh rate of 2 seconds.",
     "Error 3; the next request comes after 2 seconds.", Actor::AdServer,
     [](const Plan&) { return with(status(500), kVADHeaderRefreshRate, "2"); }},
    {"slow", "An ad after 3 seconds.", "The ad is shown, late.", Actor::AdServer,
     [](const Plan& plan) { return with(plan.fill(), Ending::Whole, platform::Seconds(3)); }},
    {"dribble", "An ad in twenty pieces, 6 seconds in all.", "The ad is shown, late.",
     Actor::AdServer, [](const Plan& plan) { return with(plan.fill(), Ending::Dribble); }},
    {"hang", "No answer for two minutes, then a cut.", "Error 2 once the client's patience ends.",
     Actor::AdServer, [](const Plan& plan) { return with(plan.fill(), Ending::Hang); }},
    {"cut", "The connection is cut before an answer.", "Error 2.", Actor::AdServer,
     [](const Plan& plan) { return with(plan.fill(), Ending::CutBeforeHeaders); }},
    {"cut-body", "The connection is cut within the ad.", "Error 2.", Actor::AdServer,
     [](const Plan& plan) { return with(plan.fill(), Ending::CutInBody); }},
    {"endless", "A body without end.", "Error 2 at the client's limit; memory stays bounded.",
     Actor::AdServer, [](const Plan& plan) { return with(plan.fill(), Ending::Endless); }},
    {"large", "An ad of five megabytes.", "The ad is shown.", Actor::AdServer,
     [](const Plan& plan) {
       Answer answer = plan.fill();
       answer.body = large();
       return answer;
     }},
    {"redirect-chain", "Three redirects with tracking headers on each, then an ad.",
     "The ad is shown; the trackers of all four answers are fired.", Actor::AdServer,
     redirectChain},
    {"redirect-loop", "Redirects that lead back to themselves.",
     "Error 2 after the client's greatest number of redirects.", Actor::AdServer,
     [](const Plan& plan) { return redirect(plan.nextHop); }},
    {"redirect-store", "A redirect to a store link.", "Error 2; nothing opens.", Actor::AdServer,
     [](const Plan&) { return redirect("itms-apps://store.example/app/id4711"); }},
    {"latin-1", "An ad in ISO 8859-1 that says so.", "No UTF-8, so no content: error 1.",
     Actor::AdServer,
     [](const Plan& plan) { return spoiled(plan, "text/html; charset=iso-8859-1", "caf\xE9"); }},
    {"invalid-utf8", "An ad that says UTF-8 and is not.", "No content: error 1.", Actor::AdServer,
     [](const Plan& plan) { return spoiled(plan, "text/html; charset=utf-8", "\xC3\x28\xFF"); }},
    {"trackers-many", "A thousand impression URLs.",
     "The ad is shown; the client fires no more than it has bounds for.", Actor::AdServer,
     manyTrackers},
    {"trackers-bad", "Impression URLs of which only the last is good.",
     "The ad is shown; the good one is fired.", Actor::AdServer, badTrackers},
    {"refresh-fast", "An ad with a refresh rate of 1 second.", "A new ad every second.",
     Actor::AdServer,
     [](const Plan& plan) { return with(plan.fill(), kVADHeaderRefreshRate, "1"); }},
    {"refresh-nonsense", "An ad whose refresh rate is a word.", "The ad is shown and stays.",
     Actor::AdServer,
     [](const Plan& plan) { return with(plan.fill(), kVADHeaderRefreshRate, "soon"); }},
    {"ad-self-click", "An ad that navigates away and opens things by itself.",
     "No click is counted, for nobody touched it.", Actor::AdServer,
     [](const Plan& plan) { return plan.hostile("hostile-self-click.html"); }},
    {"ad-flood", "An ad that sends two thousand messages at once.",
     "The ad is shown; the application stays responsive.", Actor::AdServer,
     [](const Plan& plan) { return plan.hostile("hostile-flood.html"); }},
    {"ad-nonsense", "An ad with messages that are empty, doubled, huge or malformed.",
     "The ad is shown; nothing opens; at most a line is logged.", Actor::AdServer,
     [](const Plan& plan) { return plan.hostile("hostile-nonsense.html"); }},
    {"script-invalid-request", "The script answers \"invalidRequest\".", "Error 0 and a line.",
     Actor::Script, nullptr},
    {"script-unable-to-serve", "The script answers \"unableToServe\".", "Error 0 and a line.",
     Actor::Script, nullptr},
    {"script-errors", "The script answers \"loadAdURL\" with errors.", "Error 0.", Actor::Script,
     nullptr},
    {"script-no-url", "The script answers \"loadAdURL\" without a URL.", "An error; no crash.",
     Actor::Script, nullptr},
    {"script-twice", "The script answers twice.", "The first answer counts.", Actor::Script,
     nullptr},
    {"script-tovask", "The script names the type \"tovask\".",
     "The ad request carries \"seq_num=1\"; the ad is shown.", Actor::Script, nullptr},
    {"script-throws", "The script fails with an exception.", "No answer: the load stays under way.",
     Actor::Script, nullptr},
    {"script-silent", "The script never answers.", "No answer: the load stays under way.",
     Actor::Script, nullptr},
    {"script-404", "The script host has no script.", "Error 2, unless an older copy is at hand.",
     Actor::ScriptHost, [](const Plan&) { return status(404); }},
    {"script-500", "The script host fails.", "Error 2, unless an older copy is at hand.",
     Actor::ScriptHost, [](const Plan&) { return status(500); }},
    {"script-hang", "The script host does not answer.",
     "Error 2 once the client's patience ends, unless an older copy is at hand.", Actor::ScriptHost,
     [](const Plan& plan) { return with(plan.fill(), Ending::Hang); }},
    {"script-cut", "The connection is cut within the script.",
     "Error 2, unless an older copy is at hand.", Actor::ScriptHost,
     [](const Plan& plan) { return with(plan.fill(), Ending::CutInBody); }},
    {"script-empty", "The script is empty.", "Error 2.", Actor::ScriptHost,
     [](const Plan&) { return Answer{.contentType = "text/javascript; charset=utf-8"}; }},
    {"script-garbage", "The script is no script.", "No answer: the load stays under way.",
     Actor::ScriptHost,
     [](const Plan&) {
       return Answer{.contentType = "text/javascript; charset=utf-8",
                     .body = "function ( { ;;; \n"};
     }},
};

}  // namespace

std::string_view nameOf(Actor actor) {
  switch (actor) {
    case Actor::ScriptHost: return "script host";
    case Actor::Script: return "script";
    case Actor::AdServer: return "ad server";
  }
  return "";
}

const std::vector<Scenario>& scenarios() {
  static const std::vector<Scenario> all(std::begin(kScenarios), std::end(kScenarios));
  return all;
}

const Scenario* scenarioNamed(std::string_view name) {
  const auto found = std::find_if(scenarios().begin(), scenarios().end(),
                                  [name](const Scenario& each) { return each.name == name; });
  return found == scenarios().end() ? nullptr : &*found;
}

}  // namespace sandbox
