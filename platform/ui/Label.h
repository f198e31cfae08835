// One line of small text, with an optional symbol before it and an optional detail after it.
#pragma once

#include <memory>
#include <string>

#include "platform/ui/Button.h"
#include "platform/ui/View.h"

namespace valdren::platform {

/// Centred. When there is too little room, the detail is cut at its end or hidden, and the text is
/// cut at its start. The tooltip shows everything.
class Label : public View {
 public:
  explicit Label(const Rect& frame = {});
  ~Label() override;

  // Control characters and characters that change the writing direction are removed from both.
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
