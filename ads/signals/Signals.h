// What the user did inside the ad, encrypted for the ad network. docs/signals.md lists what is
// sent.
#pragma once

#include <string>
#include <string_view>

namespace valdren {

/// Notes that an ad of this request type is about to be fetched by a client of this version, and
/// that the view of the ad before it ends. Not 0.
int vad_gig(int requestType, std::string_view sdkVersion);

/// Fills `text` with the signals for the announced ad's request, one "key=value" pair: what the
/// person did with the ad before it. 0, and an untouched text, when no ad has been announced yet or
/// the encryption fails.
int vad_gmrs(std::string& text);

/// Fills `text` with the signals for a click on the announced ad, which has this identifier, one
/// ready-made query item. 0, and an untouched text, when the encryption fails.
int vad_gmcs(std::string_view adIdentifier, std::string& text);

/// Notes a touch inside the ad: its place and duration as the ad's script tells them, -1 for what
/// it does not tell. Not 0.
int vad_htg(int x, int y, int duration);

}  // namespace valdren
