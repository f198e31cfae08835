// Log lines, written to the journal or the terminal.
#pragma once

#include <string_view>

namespace valdren::platform {

/// Logs one line at message level. Control characters, line breaks included, are escaped, so that a
/// page's text cannot forge a second line. Lines over 4 KiB are cut.
void log(std::string_view line);

/// The same at warning level, for what the user or the developer should act on.
void logWarning(std::string_view line);

/// Logs one line that appears only with G_MESSAGES_DEBUG=Valdren.
void logDebug(std::string_view line);

}  // namespace valdren::platform
