// Links that tell a third address that they were followed.
#pragma once

#include <webkit/webkit.h>

namespace valdren::platform {

/// Has pages with this manager send no pings of links. The engine reads the rule from a file and
/// needs a moment for the first time; managers that came before get it then. Where it cannot be
/// made, one line says so and pages go without it: such pings tell nothing that a script could not.
void refusePings(WebKitUserContentManager* manager);

}  // namespace valdren::platform
