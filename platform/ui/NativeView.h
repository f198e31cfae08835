// The toolkit's part of a view: one widget that places its children by their frames.
#pragma once

#include <memory>

#include "platform/ui/Geometry.h"

namespace Gtk {
class Widget;
}

namespace valdren::platform {

class View;

/// Owned by its view. Its children, from bottom to top, are the content widget and the subviews.
class NativeView {
 public:
  explicit NativeView(View& view);
  ~NativeView();
  NativeView(const NativeView&) = delete;
  NativeView& operator=(const NativeView&) = delete;

  Gtk::Widget& widget();

  /// A toolkit widget that fills the view's bounds beneath its subviews; null removes it. The
  /// caller keeps it alive while it is set.
  void setContent(Gtk::Widget* content);

  /// The minimum height of the content, in points; 0 without content.
  double contentHeight() const;

  /// While covered, the view is not drawn and gets no touches, keys or screen reader focus. It
  /// keeps its frame and remembers which control has the keyboard's focus.
  void setCovered(bool covered);
  /// Moves the keyboard's focus into the view: to the control that had it when the view was
  /// covered, else to the first.
  void focus();
  bool isFocused() const;

  // Called by the view.
  void insertOnTop(NativeView& subview);
  void remove(NativeView& subview);
  void frameChanged();
  void appearanceChanged();

 private:
  class Container;
  class FocusMemory;
  View& view_;
  std::unique_ptr<Container> container_;
  std::unique_ptr<FocusMemory> focusMemory_;
};

}  // namespace valdren::platform
