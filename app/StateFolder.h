// Whether the application can keep its state.
#pragma once

#include <optional>
#include <string>

namespace quorbel {

/// Makes the state folder where it is missing. What is wrong with it, in one sentence, or nothing
/// when it can be written.
std::optional<std::string> checkStateFolder();

}  // namespace quorbel
