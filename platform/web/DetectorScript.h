// The script that makes links from telephone numbers, mail addresses and web addresses in a page's
// text.
#pragma once

namespace valdren::platform {

/// Runs once, when the page has loaded completely. It checks at most 5000 pieces of text and makes
/// at most 300 links. It skips links, controls, code and text that is being edited.
extern const char* const kDetectorScript;

}  // namespace valdren::platform
