#include "platform/ui/Label.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include "platform/base/Text.h"
#include "platform/ui/NativeImage.h"
#include "platform/ui/NativeView.h"

namespace valdren::platform {
namespace {

constexpr int kSymbolPoints = 9;
constexpr std::size_t kMostCharacters = 300;
constexpr double kRoomForDetail = 140;

bool changesDirection(gunichar character) {
  return (character >= 0x202A && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069) || character == 0x200E ||
         character == 0x200F || character == 0x061C;
}

/// Text from a page must neither draw over its neighbours nor change their writing direction.
Glib::ustring tame(const std::string& text) {
  Glib::ustring tamed;
  bool afterSpace = false;
  for (const gunichar character : Glib::ustring(repairedUTF8(text))) {
    if (tamed.size() == kMostCharacters) break;
    if (g_unichar_isspace(character)) {
      if (!tamed.empty() && !afterSpace) tamed += ' ';
      afterSpace = true;
    } else if (!g_unichar_iscntrl(character) && !changesDirection(character)) {
      tamed += character;
      afterSpace = false;
    }
  }
  return tamed;
}

}  // namespace

struct Label::Native {
  Gtk::Box box{Gtk::Orientation::HORIZONTAL, 4};
  SymbolWidget symbol{Symbol::None, kSymbolPoints};
  Gtk::Label text;
  Gtk::Label detail;
};

Label::Label(const Rect& frame) : View(frame), native_(std::make_unique<Native>()) {
  loadWidgetStyle();
  native_->symbol.set_visible(false);
  native_->symbol.set_valign(Gtk::Align::CENTER);
  native_->text.set_ellipsize(Pango::EllipsizeMode::START);
  native_->text.set_single_line_mode(true);
  native_->detail.set_ellipsize(Pango::EllipsizeMode::END);
  native_->detail.set_single_line_mode(true);
  native_->detail.set_visible(false);
  native_->detail.add_css_class("detail");
  native_->box.add_css_class("platform-label");
  native_->box.set_halign(Gtk::Align::CENTER);
  native_->box.set_valign(Gtk::Align::CENTER);
  native_->box.append(native_->symbol);
  native_->box.append(native_->text);
  native_->box.append(native_->detail);
  native().setContent(&native_->box);
}

Label::~Label() {
  invalidateWeakReferences();
  native().setContent(nullptr);
}

void Label::setText(const std::string& text) {
  text_ = tame(text);
  native_->text.set_text(text_);
  announce();
}

void Label::setDetail(const std::string& detail) {
  detail_ = tame(detail);
  native_->detail.set_text(detail_);
  layoutSubviews();
  announce();
}

void Label::layoutSubviews() {
  native_->detail.set_visible(!detail_.empty() && frame().width >= kRoomForDetail);
}

void Label::setSymbol(Symbol symbol, const std::string& meaning) {
  symbol_ = symbol;
  meaning_ = meaning;
  native_->symbol.setSymbol(symbol);
  native_->symbol.set_visible(symbol != Symbol::None);
  announce();
}

void Label::announce() {
  std::string all;
  for (const std::string* part : {&meaning_, &text_, &detail_}) {
    if (part->empty()) continue;
    if (!all.empty()) all += ", ";
    all += *part;
  }
  native_->box.set_tooltip_text(all);
  setAccessibilityLabel(all);
}

}  // namespace valdren::platform
