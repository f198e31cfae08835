#include "platform/ui/InterfaceView.h"

#include <giomm/resource.h>
#include <giomm/simpleactiongroup.h>
#include <glibmm/value.h>
#include <gtk/gtk.h>
#include <gtkmm/builder.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include <algorithm>

#include "platform/base/Log.h"
#include "platform/base/Translation.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/ScreenKeys.h"
#include "platform/ui/TileLayout.h"

namespace valdren::platform {
namespace {

std::string theResourceBase;

Glib::RefPtr<Gio::SimpleActionGroup> groupOf(const InterfaceView::Actions& actions) {
  auto group = Gio::SimpleActionGroup::create();
  for (const auto& [name, action] : actions) group->add_action(name, action);
  return group;
}

const Gtk::Label* firstLabel(Gtk::Widget& widget) {
  for (Gtk::Widget* child = widget.get_first_child(); child; child = child->get_next_sibling()) {
    if (const auto* const label = dynamic_cast<Gtk::Label*>(child)) return label;
    if (const Gtk::Label* const label = firstLabel(*child)) return label;
  }
  return nullptr;
}

void updateText(Gtk::Widget& widget, Gtk::Accessible::Property property, const std::string& text) {
  Glib::Value<Glib::ustring> value;
  value.init(Glib::Value<Glib::ustring>::value_type());
  value.set(text);
  widget.update_property(property, value);
}

}  // namespace

struct InterfaceView::Widgets {
  Glib::RefPtr<Gtk::Builder> builder;
  Gtk::Widget* root = nullptr;
  std::vector<std::string> names;
  std::map<std::string, Gtk::Button*, std::less<>> buttons;

  Gtk::Button* button(std::string_view name) const {
    const auto found = buttons.find(name);
    return found == buttons.end() ? nullptr : found->second;
  }

  /// Null when there is none. Uses the C function, because gtkmm treats a missing object as a
  /// program error.
  GtkWidget* object(const std::string& id) const {
    GObject* const found = gtk_builder_get_object(builder->gobj(), id.c_str());
    return GTK_IS_WIDGET(found) ? GTK_WIDGET(found) : nullptr;
  }

  /// Finds the named buttons in tree order, which is the order of the file.
  void collect(Gtk::Widget& widget) {
    for (Gtk::Widget* child = widget.get_first_child(); child; child = child->get_next_sibling()) {
      auto* const button = dynamic_cast<Gtk::Button*>(child);
      const std::string name = button ? button->get_buildable_id() : Glib::ustring();
      if (name.empty() || name.starts_with("___")) {
        collect(*child);
      } else if (buttons.emplace(name, button).second) {
        names.push_back(name);
      }
    }
  }
};

void InterfaceView::setResourceBase(std::string base) {
  theResourceBase = std::move(base);
}
const std::string& InterfaceView::resourceBase() {
  return theResourceBase;
}

Result<std::shared_ptr<InterfaceView>> InterfaceView::load(const std::string& name,
                                                           const std::string& object,
                                                           const Rect& frame,
                                                           const Actions& actions) {
  registerTileLayouts();
  auto widgets = std::make_unique<Widgets>();
  try {
    widgets->builder = Gtk::Builder::create_from_resource(theResourceBase + "/" + name + ".ui");
    if (GtkWidget* const root = widgets->object(object)) widgets->root = Glib::wrap(root);
  } catch (const Glib::Error& error) {
    return Error{kErrorDomain, 0,
                 "the interface file \"" + name + ".ui\" cannot be read: " + error.what()};
  }
  if (!widgets->root) {
    return Error{kErrorDomain, 0,
                 "the interface file \"" + name + ".ui\" has no object \"" + object + "\""};
  }
  widgets->root->insert_action_group("screen", groupOf(actions));
  widgets->collect(*widgets->root);
  return std::shared_ptr<InterfaceView>(new InterfaceView(frame, std::move(widgets)));
}

InterfaceView::InterfaceView(const Rect& frame, std::unique_ptr<Widgets> widgets)
    : View(frame), widgets_(std::move(widgets)) {
  native().setContent(widgets_->root);
  pressByKeys(widgets_->root->gobj());
}

InterfaceView::~InterfaceView() {
  native().setContent(nullptr);
}

const std::vector<std::string>& InterfaceView::controls() const {
  return widgets_->names;
}

void InterfaceView::setSelected(std::string_view control, bool selected) {
  Gtk::Button* const button = widgets_->button(control);
  if (!button || isSelected(control) == selected) return;
  if (selected) {
    button->add_css_class("selected");
  } else {
    button->remove_css_class("selected");
  }
  gtk_accessible_update_state(
      GTK_ACCESSIBLE(button->gobj()), GTK_ACCESSIBLE_STATE_PRESSED,
      selected ? GTK_ACCESSIBLE_TRISTATE_TRUE : GTK_ACCESSIBLE_TRISTATE_FALSE, -1);
  // Some screen readers announce a button's new name but not its new state.
  updateText(*button, Gtk::Accessible::Property::LABEL,
             titleOfControl(control) + (selected ? translated(", playing") : ""));
}

bool InterfaceView::isSelected(std::string_view control) const {
  const Gtk::Button* const button = widgets_->button(control);
  return button && button->has_css_class("selected");
}

void InterfaceView::setHidden(const std::string& object, bool hidden) {
  GtkWidget* const widget = widgets_->object(object);
  if (!widget) return;
  gtk_widget_set_visible(widget, !hidden);
  GtkWidget* const scroller = gtk_widget_get_ancestor(widget, GTK_TYPE_SCROLLED_WINDOW);
  if (hidden || !scroller) return;
  gtk_adjustment_set_value(gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scroller)), 0);
}

bool InterfaceView::isHidden(const std::string& object) const {
  GtkWidget* const widget = widgets_->object(object);
  return !widget || !gtk_widget_get_visible(widget);
}

std::string InterfaceView::titleOfControl(std::string_view control) const {
  Gtk::Button* const button = widgets_->button(control);
  if (!button) return "";
  if (!button->get_label().empty()) return button->get_label();
  const Gtk::Label* const label = firstLabel(*button);
  return label ? label->get_text() : Glib::ustring();
}

}  // namespace valdren::platform
