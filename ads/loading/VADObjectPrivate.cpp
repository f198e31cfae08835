#include "ads/loading/VADObjectPrivate.h"

#include "platform/RunLoop.h"

namespace valdren {

std::shared_ptr<VADObjectPrivate> VADObjectPrivate::initWithView(platform::View& view) {
  return std::shared_ptr<VADObjectPrivate>(new VADObjectPrivate(view));
}

void VADObjectPrivate::loadRequest(const std::shared_ptr<VADRequest>& request) {
  hasAutoRefreshed_ = false;
  const auto given = std::dynamic_pointer_cast<VADRequestPrivate>(request);
  if (given && given == request_) return;
  request_ = given ? given->copy() : std::make_shared<VADRequestPrivate>();
}

void VADObjectPrivate::cancelPendingActions() {
  platform::RunLoop::shared().cancelPerformRequests(*this);
}

}  // namespace valdren
