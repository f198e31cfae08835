// The ad engine script: where it is, and what the client calls in it and in pages. The scripts in
// sandbox/pages define these functions.
#pragma once

namespace valdren {

/// On the script host.
inline constexpr const char* kVADScriptPath = "/urvo/sdk-core-v40.js";
/// The script's function that takes the request's parameters.
inline constexpr const char* kVADScriptEntryFunction = "URVO_buildAdURL";
/// A page's function that takes what the client has to say: a name, and values where there are
/// some.
inline constexpr const char* kVADPageReceiver = "URVO_ReceiveMessage";

/// How the client calls itself to scripts, pages and the ad server.
inline constexpr const char* kVADClientVersion = "urvo-sdk-i-v4.1.1";

// Types of ads that the script answers.
inline constexpr const char* kVADAdTypeStrevel = "strevel";
inline constexpr const char* kVADAdTypeVantic = "vantic";
inline constexpr const char* kVADAdTypeQorm = "qorm";
inline constexpr const char* kVADAdTypeTovask = "tovask";

}  // namespace valdren
