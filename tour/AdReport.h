// What the ad network inside the application was told.
#pragma once

#include <string>
#include <vector>

namespace sandbox {
class Sandbox;
}

namespace quorbel {

/// One value that an ad request is to tell: a text, or one of those below.
struct ExpectedParameter {
  std::string key;
  std::string value;
};

/// Any number above 0.
inline constexpr const char* kAnyPositive = "a number above 0";
/// Nothing at all.
inline constexpr const char* kMissing = "nothing";
/// The ticket of the ad before, and the address that it was pinged at, as far as it is told.
inline constexpr const char* kTicket = "ticket";
inline constexpr const char* kTicketPing = "ping";

/// Why the latest ad request does not tell all this; empty when it does.
std::string adRequestProblem(const sandbox::Sandbox& network,
                             const std::vector<ExpectedParameter>& expected);

}  // namespace quorbel
