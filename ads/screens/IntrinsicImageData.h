// The pictures that the screens bring along: PNG files as base64 text.
#pragma once

namespace valdren {

extern const char* const kCloseButtonPNG;           // 50 by 50 pixels
extern const char* const kBrowserForwardButtonPNG;  // 54 by 54 pixels
extern const char* const kBrowserBackButtonPNG;     // 54 by 54 pixels

}  // namespace valdren
