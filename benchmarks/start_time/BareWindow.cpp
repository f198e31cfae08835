// The least that a gtkmm program can be: what starting costs before anything is shown in the
// window.
#include <gtkmm/application.h>
#include <gtkmm/window.h>

int main(int argc, char** argv) {
  const auto application =
      Gtk::Application::create("com.valdren.barewindow", Gio::Application::Flags::NON_UNIQUE);
  return application->make_window_and_run<Gtk::Window>(argc, argv);
}
