// Tells property lists that would break their reader from harmless ones.
#pragma once

#include <string_view>

namespace platform {

/// Whether reading the XML or binary list needs no more than 512 levels and a million values. A
/// binary list may refer to a value many times over, so that few bytes stand for endless content.
/// What is no list at all counts as readable: its reader says so itself.
bool isReadablePropertyList(std::string_view content);

}  // namespace platform
