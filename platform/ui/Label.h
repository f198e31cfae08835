// One line of small text, with a symbol before it and a detail behind it when it has them.
#pragma once

#include <memory>
#include <string>

#include "platform/ui/Button.h"
#include "platform/ui/View.h"

namespace valdren::platform {

/// Centred. Where room is short, the detail loses its end, or goes altogether, and the text loses
/// its beginning; the tooltip tells all.
class Label : public View {
 public:
  explicit Label(const Rect& frame = {});
  ~Label() override;

  // Of both, control characters and those that change the writing direction are left out.
  void setText(const std::string& text);
  const std::string& text() const { return text_; }
  void setDetail(const std::string& detail);
  const std::string& detail() const { return detail_; }
  /// `meaning` is what a screen reader says for the symbol.
  void setSymbol(Symbol symbol, const std::string& meaning);
  Symbol symbol() const { return symbol_; }

 protected:
  void layoutSubviews() override;

 private:
  struct Native;
  void announce();

  std::unique_ptr<Native> native_;
  std::string text_;
  std::string detail_;
  std::string meaning_;
  Symbol symbol_ = Symbol::None;
};

}  // namespace valdren::platform
