#include "platform/application/Appearance.h"

#include <gdkmm/display.h>
#include <giomm/dbusproxy.h>
#include <giomm/resource.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/settings.h>
#include <gtkmm/stylecontext.h>
#include <gtkmm/window.h>

#include <cstdlib>
#include <set>
#include <utility>

namespace valdren::platform {
namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* kSettings = "org.freedesktop.portal.Settings";
constexpr const char* kAppearance = "org.freedesktop.appearance";
constexpr const char* kHighContrast = "Default-hc";

/// The portal wraps values in one or two variants, depending on its version.
guint32 numberIn(Glib::VariantBase value) {
  while (value.is_of_type(Glib::VariantType("v"))) {
    value = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::VariantBase>>(value).get();
  }
  if (!value.is_of_type(Glib::VariantType("u"))) return 0;
  return Glib::VariantBase::cast_dynamic<Glib::Variant<guint32>>(value).get();
}

void apply(const Glib::ustring& key, guint32 value) {
  const auto settings = Gtk::Settings::get_default();
  if (key == "color-scheme") settings->property_gtk_application_prefer_dark_theme() = value == 1;
  if (key == "contrast" && value == 1) settings->property_gtk_theme_name() = kHighContrast;
  if (key == "contrast" && value == 0 && settings->property_gtk_theme_name() == kHighContrast) {
    settings->reset_property("gtk-theme-name");
  }
}

bool isHighContrast() {
  const char* const forced = std::getenv("GTK_THEME");
  const std::string theme =
      forced ? forced : Gtk::Settings::get_default()->property_gtk_theme_name().get_value().raw();
  return theme.starts_with("HighContrast") || theme.find("-hc") != std::string::npos ||
         theme.find(":hc") != std::string::npos;
}

void loadStyleSheet(const std::string& resource) {
  static std::set<std::string> loaded;
  if (!loaded.insert(resource).second) return;
  if (!Gio::Resource::get_file_exists_global_nothrow(resource)) return;
  const auto sheet = Gtk::CssProvider::create();
  sheet->load_from_resource(resource);
  Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), sheet,
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

/// Asynchronous, so that a desktop without a portal does not delay the window.
class Portal {
 public:
  void connect() {
    if (std::exchange(connected_, true)) return;
    Gio::DBus::Proxy::create_for_bus(
        Gio::DBus::BusType::SESSION, kPortal, kPortalPath, kSettings,
        [this](const Glib::RefPtr<Gio::AsyncResult>& result) { receive(result); }, {},
        Gio::DBus::ProxyFlags::DO_NOT_LOAD_PROPERTIES | Gio::DBus::ProxyFlags::DO_NOT_AUTO_START);
  }

 private:
  void receive(const Glib::RefPtr<Gio::AsyncResult>& result) {
    try {
      proxy_ = Gio::DBus::Proxy::create_for_bus_finish(result);
    } catch (const Glib::Error&) {
      return;
    }
    proxy_->signal_signal().connect([](const Glib::ustring&, const Glib::ustring& signal,
                                       const Glib::VariantContainerBase& parameters) {
      if (signal != "SettingChanged" || parameters.get_n_children() != 3) return;
      Glib::Variant<Glib::ustring> group;
      Glib::Variant<Glib::ustring> key;
      Glib::VariantBase value;
      parameters.get_child(group, 0);
      parameters.get_child(key, 1);
      parameters.get_child(value, 2);
      if (group.get() == kAppearance) apply(key.get(), numberIn(value));
    });
    read("color-scheme");
    read("contrast");
  }

  void read(const Glib::ustring& key) {
    const auto arguments =
        Glib::Variant<std::tuple<Glib::ustring, Glib::ustring>>::create({kAppearance, key});
    proxy_->call(
        "Read",
        [this, key](const Glib::RefPtr<Gio::AsyncResult>& result) {
          try {
            Glib::VariantBase value;
            proxy_->call_finish(result).get_child(value, 0);
            apply(key, numberIn(value));
          } catch (const Glib::Error&) {
            // No portal, or it does not have the key: the toolkit's own theme stays.
          }
        },
        arguments);
  }

  bool connected_ = false;
  Glib::RefPtr<Gio::DBus::Proxy> proxy_;
};

}  // namespace

void followAppearance(const std::string& resourceBase) {
  loadStyleSheet(resourceBase + "/style.css");
  static Portal portal;
  portal.connect();
}

void markHighContrast(Gtk::Window& window) {
  const auto mark = [&window] {
    if (isHighContrast()) {
      window.add_css_class("high-contrast");
    } else {
      window.remove_css_class("high-contrast");
    }
  };
  mark();
  Gtk::Settings::get_default()->property_gtk_theme_name().signal_changed().connect(
      sigc::track_object(mark, window));
}

}  // namespace valdren::platform
