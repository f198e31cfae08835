// What a page may not have from the person's desktop, whoever asks.
#pragma once

#include <webkit/webkit.h>

namespace valdren::platform {

/// Refuses, at once and without a dialog, whatever would reach beyond the page or wait for the
/// person: permissions, dialogs, passwords, files, colours, printing, notices, the whole screen,
/// dropped content, and menu items that open or save.
void refuseWhatReachesBeyondThePage(WebKitWebView* view);

/// Settings of a page that is a stranger's.
WebKitSettings* makeStrangersSettings();

}  // namespace valdren::platform
