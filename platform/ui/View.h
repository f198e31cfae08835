// A rectangle on the screen, which can hold other views.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/base/Export.h"
#include "platform/base/WeakPtr.h"
#include "platform/ui/Geometry.h"

namespace valdren::platform {

class NativeView;
class Window;

/// The flexible parts of a view when its superview's size changes. The values can be combined.
enum AutoresizingMask : unsigned {
  kNoResizing = 0,
  kFlexibleLeftMargin = 1,
  kFlexibleWidth = 2,
  kFlexibleRightMargin = 4,
  kFlexibleTopMargin = 8,
  kFlexibleHeight = 16,
  kFlexibleBottomMargin = 32,
};

/// The kinds of events. Fingers, pens and the mouse give touches.
enum class EventType { Touches = 0, Motion = 1, RemoteControl = 2 };

/// A view shares the ownership of its subviews. Main thread only; the toolkit must have been
/// started by `Application` or by the host.
class VALDREN_EXPORT View : public virtual WeakTarget, public std::enable_shared_from_this<View> {
 public:
  explicit View(const Rect& frame = {});
  virtual ~View();
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  /// Position and size in the superview's coordinates, in points; the origin is the top-left
  /// corner. Negative and NaN sizes count as 0. A new size resizes the subviews by their masks.
  const Rect& frame() const;
  void setFrame(const Rect& frame);
  /// The same size with the origin at (0, 0).
  Rect bounds() const;

  unsigned autoresizingMask() const;
  void setAutoresizingMask(unsigned mask);
  void setAutoresizesSubviews(bool resizes);

  /// Adds a view on top of the present subviews and removes it from its former superview. Null,
  /// this view itself and its ancestors are ignored.
  void addSubview(std::shared_ptr<View> subview);
  /// Releases the superview's reference. Nothing happens without a superview.
  void removeFromSuperview();
  const std::vector<std::shared_ptr<View>>& subviews() const;
  View* superview() const;
  /// The window that shows this view, or null.
  Window* window() const;

  bool isHidden() const;
  void setHidden(bool hidden);
  bool isOpaque() const;
  void setOpaque(bool opaque);
  Color backgroundColor() const;
  void setBackgroundColor(const Color& color);
  bool clipsToBounds() const;
  void setClipsToBounds(bool clips);
  /// While false, neither this view nor its subviews react to touches and keys.
  bool isUserInteractionEnabled() const;
  void setUserInteractionEnabled(bool enabled);
  /// The text that a screen reader speaks; when empty, the toolkit decides.
  const std::string& accessibilityLabel() const;
  void setAccessibilityLabel(std::string label);

  /// Moves the keyboard's focus here.
  void becomeFirstResponder();
  /// Whether the keyboard's focus is here or in a view inside, while the window is active.
  bool isFirstResponder() const;

  /// Called before a touch is delivered. Returns the deepest view at `point` (in this view's
  /// coordinates) that reacts to events, or null. Overrides see every touch first and call the
  /// base.
  virtual View* hitTest(Point point, EventType type);

  /// The toolkit's part of this view; for the platform's own sources.
  NativeView& native() const;

 protected:
  /// Called after the bounds' size has changed, when the subviews have been resized.
  virtual void layoutSubviews() {}

 private:
  friend class Window;
  void resizeSubviews(Size before);
  void setOwner(Window* owner);

  struct Members;
  const std::unique_ptr<Members> members_;
};

}  // namespace valdren::platform
