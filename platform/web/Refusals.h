// Denies pages access to the user's desktop.
#pragma once

#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {

/// Refuses at once and without a dialog everything that reaches beyond the page or waits for the
/// user: permissions, dialogs, passwords, files, colours, printing, notifications, full screen,
/// dropped content, and menu items that open or save.
void refuseWhatReachesBeyondThePage(WebKitWebView* view);

/// Settings for untrusted pages.
WebKitSettings* makeStrangersSettings();

}  // namespace valdren::platform
