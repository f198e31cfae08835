// A control that calls its action when it is pressed.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/ui/Image.h"
#include "platform/ui/View.h"

namespace valdren::platform {

/// Symbols that the platform draws itself, in the colour of the text.
enum class Symbol { None, Refresh, Action, Secure, NotSecure };

/// A button's look: only its image, an item of a bar, or a bar's "Done".
enum class ButtonStyle { Custom, Bar, Done };

/// Usable by touch, mouse and keyboard. The accessibility label is also the tooltip.
class Button : public View {
 public:
  explicit Button(ButtonStyle style = ButtonStyle::Custom, const Rect& frame = {});
  ~Button() override;

  // Only the one that was set last is shown.
  void setImage(std::shared_ptr<Image> image);
  void setSymbol(Symbol symbol);
  void setTitle(const std::string& title);
  const std::shared_ptr<Image>& image() const { return image_; }
  const std::string& title() const { return title_; }

  /// The width, in points, that the content asks for.
  double naturalWidth() const;

  /// Whether it glows while it is pressed.
  void setShowsTouchWhenHighlighted(bool shows);
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);
  /// Called when a press ends inside the button. The action may release the button.
  void setAction(std::function<void()> action) { action_ = std::move(action); }

 private:
  struct Native;
  void clicked();

  std::unique_ptr<Native> native_;
  std::shared_ptr<Image> image_;
  std::string title_;
  std::function<void()> action_;
  bool enabled_ = true;
};

}  // namespace valdren::platform
