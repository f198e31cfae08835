// The timings of the page that a click leads to.
#pragma once

namespace valdren {

/// The page begins to load: starts the timing of its load unless there is one already.
void landingPageDidStartLoad();
/// The page is there: ends the timing of its load and starts that of the visit, unless there is one
/// of a visit already.
void landingPageDidFinishLoad();

}  // namespace valdren
