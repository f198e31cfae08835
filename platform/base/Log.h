// Lines for whoever runs or embeds the application, in the journal or on the terminal.
#pragma once

#include <string_view>

namespace valdren::platform {

/// Logs one line at the level of messages, as it stands. Line breaks and other control characters
/// are escaped, so that a page's text cannot forge a second line; over 4 KiB the line is cut.
void log(std::string_view line);

/// The same at the level of warnings: something that the person or developer should act on.
void logWarning(std::string_view line);

/// Logs one line that is only seen with G_MESSAGES_DEBUG=Valdren.
void logDebug(std::string_view line);

}  // namespace valdren::platform
