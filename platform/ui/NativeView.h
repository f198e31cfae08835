// The toolkit's side of a view: one widget that places its children by their frames.
#pragma once

#include <memory>

#include "platform/ui/Geometry.h"

namespace Gtk {
class Widget;
}

namespace valdren::platform {

class View;

/// Owned by its view. Children are, from the bottom up: the content widget, then the subviews.
class NativeView {
 public:
  explicit NativeView(View& view);
  ~NativeView();
  NativeView(const NativeView&) = delete;
  NativeView& operator=(const NativeView&) = delete;

  Gtk::Widget& widget();

  /// A toolkit widget that fills the view's bounds beneath its subviews; null takes it away. The
  /// caller keeps it alive for as long as it is set.
  void setContent(Gtk::Widget* content);

  /// The least height, in points, that the content can be drawn in; 0 without content.
  double contentHeight() const;

  /// While covered, the view is neither drawn nor reached by touches, keys and screen readers. It
  /// keeps its frame, and remembers which of its controls has the keyboard's focus.
  void setCovered(bool covered);
  /// Moves the keyboard's focus into the view: to the control that had it when the view was
  /// covered, else to the first.
  void focus();
  bool isFocused() const;

  // What the view tells.
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
