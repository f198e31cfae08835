// A spinner that shows that something is going on.
#pragma once

#include <memory>

#include "platform/ui/View.h"

namespace valdren::platform {

enum class ActivityIndicatorStyle : int { WhiteLarge = 0, White = 1, Gray = 2 };

/// Invisible while it stands still. Does not take touches.
class ActivityIndicator : public View {
 public:
  explicit ActivityIndicator(ActivityIndicatorStyle style, const Rect& frame = {});
  ~ActivityIndicator() override;

  void startAnimating();
  void stopAnimating();
  bool isAnimating() const;

  View* hitTest(Point point, EventType type) override;

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace valdren::platform
