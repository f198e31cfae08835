// The timings of the page that a click leads to.
#pragma once

namespace valdren {

/// The page begins to load: starts the timing of its load unless that is running.
void landingPageDidStartLoad();
/// The page is there: ends the timing of its load and starts that of the visit, unless a visit is
/// being timed already.
void landingPageDidFinishLoad();

}  // namespace valdren
