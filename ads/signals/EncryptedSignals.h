// How signals travel: encrypted, and as one query item.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren {

/// The values as JSON, encrypted and authenticated, in letters that need no escape in a query. None
/// when that fails.
std::optional<std::string> encryptSignals(const platform::Dictionary& signals);

/// For the receiving side: the values, or none when the text was not encrypted by this client.
std::optional<platform::Dictionary> decryptSignals(std::string_view encrypted);

}  // namespace valdren
