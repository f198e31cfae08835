// The toolkit's side of an image, and the widgets that draw images and symbols.
#pragma once

#include <gdkmm/texture.h>
#include <gtkmm/widget.h>

#include <memory>

#include "platform/ui/Button.h"
#include "platform/ui/Image.h"

namespace valdren::platform {

struct Image::Native {
  Glib::RefPtr<Gdk::Texture> texture;
};

/// Shows an image at its size in points, or smaller if there is less room, in its proportions.
class ImageWidget final : public Gtk::Widget {
 public:
  explicit ImageWidget(std::shared_ptr<Image> image);

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  std::shared_ptr<Image> image_;
};

/// Draws a symbol in the colour of the text around it, crisp at every scale.
class SymbolWidget final : public Gtk::Widget {
 public:
  SymbolWidget(Symbol symbol, int points);
  void setSymbol(Symbol symbol);

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  Symbol symbol_;
  int points_;
};

/// Loads the style of these widgets and of buttons, bars and labels, once per display.
void loadWidgetStyle();

}  // namespace valdren::platform
