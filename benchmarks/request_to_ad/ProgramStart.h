// The soundboard's start, as seen on the screen.
#pragma once

namespace benchmarks {

/// Starts the soundboard `starts` times without caches, and prints when its window and its first ad
/// became visible.
void measureProgramStart(int starts);

}  // namespace benchmarks
