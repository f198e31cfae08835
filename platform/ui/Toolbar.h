// A bar of items along an edge of a screen.
#pragma once

#include <memory>
#include <vector>

#include "platform/ui/BarButtonItem.h"
#include "platform/ui/View.h"

namespace valdren::platform {

/// Lays its items out from left to right; flexible spaces share the rest. A narrow button also gets
/// touches beside it, up to the middle of the space.
class Toolbar : public View {
 public:
  explicit Toolbar(const Rect& frame = {});

  /// The background colour.
  void setTintColor(const Color& color) { setBackgroundColor(color); }
  const std::vector<std::shared_ptr<BarButtonItem>>& items() const { return items_; }
  void setItems(std::vector<std::shared_ptr<BarButtonItem>> items);

  /// The height that shows all text, at least `usual`.
  double heightFrom(double usual) const;

  /// A line about the screen's content: above the items if the bar is high enough, else in its
  /// widest space. Null removes it.
  void setPrompt(std::shared_ptr<View> prompt);

 protected:
  void layoutSubviews() override;

 private:
  double promptHeight() const;

  std::vector<std::shared_ptr<BarButtonItem>> items_;
  std::shared_ptr<View> prompt_;
};

}  // namespace valdren::platform
