#include "tests/support/Fakes.h"

#include <algorithm>

namespace platform = valdren::platform;

namespace quorbel_tests {

void FakeRunLoop::advance(double seconds) {
  const double end = now_ + seconds;
  const SourceID addedLater = next_;
  while (true) {
    auto soonest = sources_.end();
    for (auto source = sources_.begin(); source != sources_.end(); ++source) {
      const bool waitsForNextTurn = source->first >= addedLater && source->second.due <= now_;
      if (source->second.due > end || (seconds == 0 && waitsForNextTurn)) continue;
      if (soonest == sources_.end() || source->second.due < soonest->second.due) soonest = source;
    }
    if (soonest == sources_.end()) break;
    const double due = std::max(now_, soonest->second.due);
    if (clock_) clock_->advance(due - now_);
    now_ = due;
    const Task task = std::move(soonest->second.task);
    sources_.erase(soonest);
    task();
  }
  if (clock_) clock_->advance(end - now_);
  now_ = end;
}

platform::RunLoop::SourceID FakeRunLoop::addSource(platform::Seconds delay, Task task) {
  const SourceID source = next_++;
  sources_[source] = {now_ + delay.count(), std::move(task)};
  return source;
}

void FakeRunLoop::removeSource(SourceID source) {
  sources_.erase(source);
}

}  // namespace quorbel_tests
