#include "tour/AdReport.h"

#include <utility>

#include "platform/base/Json.h"
#include "sandbox/Sandbox.h"

namespace platform = valdren::platform;

namespace quorbel {
namespace {

std::string textOf(const platform::Dictionary& entry, std::string_view key) {
  const std::string* const text = entry.text(key);
  return text ? *text : "";
}

/// What stands for the expected text once the ticket is known.
std::string filledIn(const std::string& expected, const std::string& ticket) {
  if (expected == kTicket) return ticket;
  return expected == kTicketPing ? "/" + ticket : expected;
}

/// Whether the value, null when there is none, is the one that is expected.
bool isAsExpected(const platform::Value* value, const std::string& expected) {
  if (expected == kMissing) return !value;
  if (!value) return false;
  if (expected == kAnyPositive) return value->integerValue() > 0;
  return value->description() == expected;
}

std::string unlike(const std::string& key, const platform::Value* told, const std::string& wanted) {
  return "the ad request has " + (told ? told->description() : "nothing") + " for \"" + key +
         "\", other than " + wanted;
}

std::string problemOf(const platform::Dictionary& parameters,
                      const std::vector<ExpectedParameter>& expected, const std::string& ticket) {
  for (const auto& [key, value] : expected) {
    const platform::Value* const told = parameters.find(key);
    const std::string wanted = filledIn(value, ticket);
    if (!isAsExpected(told, wanted)) return unlike(key, told, wanted);
  }
  return "";
}

}  // namespace

std::string adRequestProblem(const sandbox::Sandbox& network,
                             const std::vector<ExpectedParameter>& expected) {
  const auto log = platform::parseJson(network.log());
  const auto* const table = log ? log->dictionary() : nullptr;
  const platform::Value* const requests = table ? table->find("requests") : nullptr;
  if (!requests || !requests->array()) return "the ad network keeps no log";
  std::string ticketBefore;
  std::string ticket;
  const platform::Dictionary* parameters = nullptr;
  for (const platform::Value& request : *requests->array()) {
    const platform::Dictionary* const entry = request.dictionary();
    if (!entry || textOf(*entry, "kind") != "ad") continue;
    ticketBefore = std::exchange(ticket, textOf(*entry, "ticket"));
    const platform::Value* const told = entry->find("parameters");
    parameters = told ? told->dictionary() : nullptr;
  }
  if (!parameters) return "the ad network was asked for no ad";
  return problemOf(*parameters, expected, ticketBefore);
}

}  // namespace quorbel
