// A bar of items along an edge of a screen.
#pragma once

#include <memory>
#include <vector>

#include "platform/ui/BarButtonItem.h"
#include "platform/ui/View.h"

namespace valdren::platform {

/// Lays its items out from left to right; flexible spaces share what is left over. Touches beside a
/// narrow button, up to the middle of the space around it, count as touches of the button.
class Toolbar : public View {
 public:
  explicit Toolbar(const Rect& frame = {});

  /// The background's colour.
  void setTintColor(const Color& color) { setBackgroundColor(color); }
  const std::vector<std::shared_ptr<BarButtonItem>>& items() const { return items_; }
  void setItems(std::vector<std::shared_ptr<BarButtonItem>> items);

  /// The height that the bar needs for all its text to be seen, and `usual` at the least.
  double heightFrom(double usual) const;

  /// A line about what the screen shows: above the items in a bar with room for it, else in its
  /// widest space. Null takes it away.
  void setPrompt(std::shared_ptr<View> prompt);

 protected:
  void layoutSubviews() override;

 private:
  double promptHeight() const;

  std::vector<std::shared_ptr<BarButtonItem>> items_;
  std::shared_ptr<View> prompt_;
};

}  // namespace valdren::platform
