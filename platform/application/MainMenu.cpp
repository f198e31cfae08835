#include "platform/application/MainMenu.h"

#include <giomm/menu.h>
#include <glibmm/convert.h>
#include <gtkmm/aboutdialog.h>
#include <gtkmm/application.h>
#include <gtkmm/headerbar.h>
#include <gtkmm/menubutton.h>

#include "platform/base/Translation.h"
#include "platform/storage/Folders.h"

namespace valdren::platform {
namespace {

void showAbout(Gtk::Application& application, Gtk::Window& window,
               const ApplicationDescription& description) {
  auto* const about = new Gtk::AboutDialog;
  // So that its keys are the application's, too.
  application.add_window(*about);
  about->set_transient_for(window);
  about->set_modal(true);
  about->set_program_name(description.name);
  about->set_logo_icon_name(description.identifier);
  about->set_version(description.version);
  about->set_comments(description.about);
  about->set_license_type(Gtk::License::MIT_X11);
  if (const auto folder = stateFolder()) {
    about->set_website(Glib::filename_to_uri(*folder));
    about->set_website_label(description.storedLabel);
  }
  about->signal_hide().connect([about] { delete about; });
  about->set_visible(true);
}

}  // namespace

void addMainMenu(Gtk::Application& application, Gtk::Window& window,
                 const ApplicationDescription& description) {
  application.add_action("about", [&] { showAbout(application, window, description); });
  application.add_action("quit", [&] { window.close(); });
  application.set_accels_for_action("app.quit", {"<Control>q"});
  // Of whichever window has the keyboard.
  application.set_accels_for_action("window.close", {"<Control>w"});
  application.set_accels_for_action("app.about", {"F1"});

  const auto menu = Gio::Menu::create();
  menu->append(translated("_About"), "app.about");
  menu->append(translated("_Quit"), "app.quit");
  auto* const button = Gtk::make_managed<Gtk::MenuButton>();
  button->set_icon_name("open-menu-symbolic");
  const std::string name = translated("Main Menu");
  button->set_tooltip_text(name);
  button->set_menu_model(menu);
  button->set_primary(true);
  gtk_accessible_update_property(GTK_ACCESSIBLE(button->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 name.c_str(), -1);
  static_cast<Gtk::HeaderBar&>(*window.get_titlebar()).pack_end(*button);
}

}  // namespace valdren::platform
