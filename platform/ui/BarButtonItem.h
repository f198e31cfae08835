// One item of a toolbar.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/ui/Button.h"
#include "platform/ui/Image.h"
#include "platform/ui/View.h"

namespace valdren::platform {

enum class BarSystemItem { Done, FlexibleSpace, Action, Refresh };

/// A button, a custom view, or a space that takes the remaining room.
class BarButtonItem {
 public:
  using Action = std::function<void()>;

  static std::shared_ptr<BarButtonItem> withImage(std::shared_ptr<Image> image, Action action);
  static std::shared_ptr<BarButtonItem> withSystemItem(BarSystemItem item, Action action = {});
  /// The view keeps its size and is centred vertically.
  static std::shared_ptr<BarButtonItem> withCustomView(std::shared_ptr<View> view);

  /// In points; 0, the default, is the content's natural width.
  double width() const { return width_; }
  void setWidth(double width) { width_ = width; }
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);
  const std::string& accessibilityLabel() const { return label_; }
  void setAccessibilityLabel(std::string label);

  bool isFlexibleSpace() const { return !view_; }
  /// The button or the custom view; null for a space.
  const std::shared_ptr<View>& view() const { return view_; }
  /// Null for spaces and custom views.
  Button* button() const { return button_.get(); }
  /// The width in use.
  double occupiedWidth() const;

 private:
  BarButtonItem() = default;

  std::shared_ptr<View> view_;
  std::shared_ptr<Button> button_;
  std::string label_;
  double width_ = 0;
  bool enabled_ = true;
};

}  // namespace valdren::platform
