// The script that turns telephone numbers, mail addresses and web addresses of a page's text into
// links.
#pragma once

namespace valdren::platform {

/// Runs once, when the page has loaded whole. Looks at no more than 5000 pieces of text and makes
/// no more than 300 links; leaves alone what is a link, a control, code, or being edited.
extern const char* const kDetectorScript;

}  // namespace valdren::platform
