// One line of small text, with a symbol in front of it when it has one.
#pragma once

#include <memory>
#include <string>

#include "platform/Button.h"
#include "platform/View.h"

namespace platform {

/// Centred; what does not fit ends in an ellipsis and is told by the tooltip.
class Label : public View {
 public:
  explicit Label(const Rect& frame = {});
  ~Label() override;

  /// Control characters and those that change the writing direction are left out.
  void setText(const std::string& text);
  const std::string& text() const { return text_; }
  /// `meaning` is what a screen reader says for the symbol.
  void setSymbol(Symbol symbol, const std::string& meaning);
  Symbol symbol() const { return symbol_; }

 private:
  struct Native;
  void announce();

  std::unique_ptr<Native> native_;
  std::string text_;
  std::string meaning_;
  Symbol symbol_ = Symbol::None;
};

}  // namespace platform
