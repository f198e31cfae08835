#include "platform/ui/Toolbar.h"

#include <algorithm>

#include "platform/ui/NativeView.h"

namespace valdren::platform {
namespace {

constexpr double kMargin = 8;
constexpr double kPromptHeight = 14;  // minimum
/// A bar of this height has room for the prompt above its items.
constexpr double kHighBar = 40;
/// Buttons grow up to this width, which is enough for a finger.
constexpr double kWidestTarget = 44;

struct Slot {
  double start;
  double width;
};

std::vector<Slot> slotsFor(const std::vector<std::shared_ptr<BarButtonItem>>& items, double room) {
  double taken = 0;
  int spaces = 0;
  for (const auto& item : items) {
    taken += item->occupiedWidth();
    spaces += item->isFlexibleSpace();
  }
  const double share = spaces ? std::max(0.0, room - taken) / spaces : 0;
  std::vector<Slot> slots;
  double x = kMargin;
  for (const auto& item : items) {
    const double width = item->isFlexibleSpace() ? share : item->occupiedWidth();
    slots.push_back({x, width});
    x += width;
  }
  return slots;
}

/// A narrow button takes up to half of each space beside it.
Slot widened(const std::vector<std::shared_ptr<BarButtonItem>>& items,
             const std::vector<Slot>& slots, std::size_t which) {
  const auto halfSpace = [&](std::size_t neighbour) {
    return neighbour < items.size() && items[neighbour]->isFlexibleSpace()
               ? slots[neighbour].width / 2
               : 0;
  };
  const double before = which == 0 ? kMargin : halfSpace(which - 1);
  const double after = which + 1 == items.size() ? kMargin : halfSpace(which + 1);
  const double each = std::max(0.0, (kWidestTarget - slots[which].width) / 2);
  const double grown = std::min({each, before, after});
  return {slots[which].start - grown, slots[which].width + 2 * grown};
}

Slot widestSpace(const std::vector<std::shared_ptr<BarButtonItem>>& items,
                 const std::vector<Slot>& slots) {
  Slot widest{0, 0};
  for (std::size_t i = 0; i < items.size(); ++i) {
    // The last of equal spaces, beside "Done" and away from the page's own controls.
    if (items[i]->isFlexibleSpace() && slots[i].width >= widest.width) widest = slots[i];
  }
  return widest;
}

}  // namespace

Toolbar::Toolbar(const Rect& frame) : View(frame) {
  setClipsToBounds(true);
}

void Toolbar::setItems(std::vector<std::shared_ptr<BarButtonItem>> items) {
  std::erase(items, nullptr);
  const auto former = std::move(items_);
  items_ = std::move(items);
  for (const auto& item : former) {
    if (item->view() && std::find(items_.begin(), items_.end(), item) == items_.end()) {
      item->view()->removeFromSuperview();
    }
  }
  for (const auto& item : items_) {
    if (!item->view()) continue;
    if (item->view()->superview() != this) addSubview(item->view());
    // Screen readers follow this order. Items that stay are not removed, so they keep the
    // keyboard's focus.
    native().insertOnTop(item->view()->native());
  }
  layoutSubviews();
}

void Toolbar::setPrompt(std::shared_ptr<View> prompt) {
  if (prompt_) prompt_->removeFromSuperview();
  prompt_ = std::move(prompt);
  if (prompt_) addSubview(prompt_);
  layoutSubviews();
}

double Toolbar::promptHeight() const {
  return std::max(kPromptHeight, prompt_->native().contentHeight());
}

double Toolbar::heightFrom(double usual) const {
  double items = 0;
  for (const auto& item : items_) {
    if (item->button()) items = std::max(items, item->button()->native().contentHeight());
  }
  const double prompt = prompt_ ? promptHeight() : 0;
  const bool promptOnTop = prompt_ && usual >= kHighBar;
  return std::max(usual, promptOnTop ? prompt + items : std::max(prompt, items));
}

void Toolbar::layoutSubviews() {
  const Rect area = bounds();
  const bool promptOnTop = prompt_ && area.height >= kHighBar;
  const double top = promptOnTop ? promptHeight() : 0;
  const double height = area.height - top;
  const std::vector<Slot> slots = slotsFor(items_, area.width - 2 * kMargin);
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const std::shared_ptr<View>& view = items_[i]->view();
    if (!view) continue;
    if (items_[i]->button()) {
      const Slot slot = widened(items_, slots, i);
      view->setFrame({slot.start, top, slot.width, height});
    } else {
      const Size size = view->frame().size();
      view->setFrame({slots[i].start + (slots[i].width - size.width) / 2,
                      top + (height - size.height) / 2, size.width, size.height});
    }
  }
  if (!prompt_) return;
  const Slot space = widestSpace(items_, slots);
  prompt_->setFrame(promptOnTop ? Rect{kMargin, 1, area.width - 2 * kMargin, top}
                                : Rect{space.start + 10, 0, space.width - 20, height});
}

}  // namespace valdren::platform
