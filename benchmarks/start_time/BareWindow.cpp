// A minimal gtkmm program, for the cost of starting alone, and of starting with a banner.
#include "benchmarks/start_time/BareWindow.h"

#include <gtkmm/application.h>
#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/window.h>

namespace {

class BareWindow final : public Gtk::Window {
 public:
  BareWindow() {
    set_title("Bare");
    set_default_size(360, 640);
    label_.set_valign(Gtk::Align::START);
    label_.set_margin_top(20);
    label_.set_vexpand(true);
    box_.append(label_);
    set_child(box_);
    addTo(gobj(), box_.gobj());
  }

 private:
  Gtk::Box box_{Gtk::Orientation::VERTICAL};
  Gtk::Label label_{"Bare, but drawn"};
};

}  // namespace

int main(int argc, char** argv) {
  const auto application =
      Gtk::Application::create("com.valdren.barewindow", Gio::Application::Flags::NON_UNIQUE);
  return application->make_window_and_run<BareWindow>(argc, argv);
}
