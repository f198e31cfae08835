// Blocks pings of links, which report to a third address that the link was followed.
#pragma once

#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {

/// Blocks pings of links in pages with this manager. The engine reads the rule from a file, which
/// takes a moment for the first page; earlier managers get it then. On failure one log line says so
/// and pages may send pings, which tell nothing that a script could not tell.
void refusePings(WebKitUserContentManager* manager);

}  // namespace valdren::platform
