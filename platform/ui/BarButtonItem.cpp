#include "platform/ui/BarButtonItem.h"

namespace valdren::platform {

std::shared_ptr<BarButtonItem> BarButtonItem::withImage(std::shared_ptr<Image> image,
                                                        Action action) {
  std::shared_ptr<BarButtonItem> item(new BarButtonItem);
  item->button_ = std::make_shared<Button>(ButtonStyle::Bar);
  item->button_->setImage(std::move(image));
  item->button_->setAction(std::move(action));
  item->view_ = item->button_;
  return item;
}

std::shared_ptr<BarButtonItem> BarButtonItem::withSystemItem(BarSystemItem which, Action action) {
  std::shared_ptr<BarButtonItem> item(new BarButtonItem);
  if (which == BarSystemItem::FlexibleSpace) return item;
  item->button_ =
      std::make_shared<Button>(which == BarSystemItem::Done ? ButtonStyle::Done : ButtonStyle::Bar);
  if (which == BarSystemItem::Done) item->button_->setTitle("Done");
  if (which == BarSystemItem::Action) item->button_->setSymbol(Symbol::Action);
  if (which == BarSystemItem::Refresh) item->button_->setSymbol(Symbol::Refresh);
  item->button_->setAction(std::move(action));
  item->view_ = item->button_;
  return item;
}

std::shared_ptr<BarButtonItem> BarButtonItem::withCustomView(std::shared_ptr<View> view) {
  std::shared_ptr<BarButtonItem> item(new BarButtonItem);
  item->view_ = std::move(view);
  return item;
}

void BarButtonItem::setEnabled(bool enabled) {
  enabled_ = enabled;
  if (button_) button_->setEnabled(enabled);
}

void BarButtonItem::setAccessibilityLabel(std::string label) {
  label_ = std::move(label);
  if (view_) view_->setAccessibilityLabel(label_);
}

double BarButtonItem::occupiedWidth() const {
  if (width_ > 0) return width_;
  if (button_) return button_->naturalWidth();
  return view_ ? view_->frame().width : 0;
}

}  // namespace valdren::platform
