// What pages and the ad engine script say to the client, and what it says to pages.
#pragma once

namespace valdren {

/// A message is a navigation to SCHEME://any/NAME?KEY=VALUE.
inline constexpr const char* kVADMessageScheme = "gmsg";
/// Its older form, SCHEME://NAME?KEY=VALUE, with names of its own.
inline constexpr const char* kVADOlderMessageScheme = "vantic";
inline constexpr const char* kVADOlderMessageLaunch = "launch";
inline constexpr const char* kVADOlderMessageCloseCanvas = "closecanvas";

// From pages.
inline constexpr const char* kVADMessageCanOpenURLs = "canOpenURLs";
inline constexpr const char* kVADMessageClick = "click";
inline constexpr const char* kVADMessageClose = "close";
inline constexpr const char* kVADMessageEvalInOpener = "evalInOpener";
inline constexpr const char* kVADMessageHTTPTrack = "httpTrack";
inline constexpr const char* kVADMessageLog = "log";
inline constexpr const char* kVADMessageOpen = "open";
inline constexpr const char* kVADMessageSettings = "settings";
inline constexpr const char* kVADMessageTouch = "touch";
inline constexpr const char* kVADMessageVibrate = "vibrate";

// From the ad engine script: its answers.
inline constexpr const char* kVADMessageLoadAdURL = "loadAdURL";
inline constexpr const char* kVADMessageInvalidRequest = "invalidRequest";
inline constexpr const char* kVADMessageUnableToServe = "unableToServe";

// To pages.
inline constexpr const char* kVADMessageOnHide = "onhide";
inline constexpr const char* kVADMessageOnShow = "onshow";
inline constexpr const char* kVADMessageOpenableURLs = "openableURLs";

// Keys of their values; an incoming message's are in lower case.
inline constexpr const char* kVADMessageKeyAction = "a";
inline constexpr const char* kVADMessageKeyErrors = "errors";
inline constexpr const char* kVADMessageKeyHTML = "html";
inline constexpr const char* kVADMessageKeyOrientation = "o";
inline constexpr const char* kVADMessageKeyScript = "js";
inline constexpr const char* kVADMessageKeyString = "string";
inline constexpr const char* kVADMessageKeySupportedOrientations = "supportedorientations";
inline constexpr const char* kVADMessageKeyTouchDuration = "td";
inline constexpr const char* kVADMessageKeyTouchX = "tx";
inline constexpr const char* kVADMessageKeyTouchY = "ty";
inline constexpr const char* kVADMessageKeyType = "type";
/// Of a page's message.
inline constexpr const char* kVADMessageKeyURL = "u";
/// Of the script's answer and of the older form.
inline constexpr const char* kVADMessageKeyAdURL = "url";
inline constexpr const char* kVADMessageKeyURLs = "urls";

// What "open" does.
inline constexpr const char* kVADActionBrowser = "browser";
inline constexpr const char* kVADActionVideo = "video";
inline constexpr const char* kVADActionWebApp = "webapp";

}  // namespace valdren
