// The soundboard's start as a person sees it.
#pragma once

namespace benchmarks {

/// Starts the soundboard so often, each time with nothing cached, and prints when its window and
/// the ad in it could be seen.
void measureProgramStart(int starts);

}  // namespace benchmarks
