#include "tests/support/Taps.h"

#include <gtk/gtk.h>
#include <gtkmm/widget.h>

#include "platform/ui/LaunchPermit.h"
#include "platform/ui/NativeView.h"
#include "platform/web/WebView.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

/// Gives the page the events of a tap at a point.
constexpr const char* kTap =
    "(function(x,y){var target=document.elementFromPoint(x,y);if(!target)return;"
    "var about={bubbles:true,cancelable:true,composed:true,view:window,clientX:x,clientY:y};"
    "target.dispatchEvent(new PointerEvent('pointerdown',about));"
    "target.dispatchEvent(new PointerEvent('pointerup',about));"
    "target.dispatchEvent(new MouseEvent('click',about));})";

GtkWidget* widgetOf(const platform::View& view) {
  return GTK_WIDGET(view.native().widget().gobj());
}

/// The first button inside, or the one with this id; null when there is none.
GtkWidget* buttonIn(GtkWidget* widget, std::string_view id = {}) {
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
       child = gtk_widget_get_next_sibling(child)) {
    const char* const name = gtk_buildable_get_buildable_id(GTK_BUILDABLE(child));
    if (GTK_IS_BUTTON(child) && (id.empty() || (name && id == name))) return child;
    if (GtkWidget* const found = buttonIn(child, id)) return found;
  }
  return nullptr;
}

bool pressWidget(GtkWidget* button) {
  if (!button || !gtk_widget_is_sensitive(button)) return false;
  for (GtkWidget* each = button; each && !GTK_IS_ROOT(each); each = gtk_widget_get_parent(each)) {
    if (!gtk_widget_get_visible(each) || !gtk_widget_get_can_target(each)) return false;
  }
  g_signal_emit_by_name(button, "clicked");
  return true;
}

}  // namespace

bool tap(platform::Window& window, platform::Point point) {
  platform::LaunchPermit::shared().touched();
  platform::ViewController* const top = window.topViewController();
  if (!top) return false;
  platform::View* outermost = top->view().get();
  while (outermost->superview()) outermost = outermost->superview();
  platform::View* const hit = outermost->hitTest(point, platform::EventType::Touches);
  if (auto* const button = dynamic_cast<platform::Button*>(hit)) return press(*button);
  auto* const page = dynamic_cast<platform::WebView*>(hit);
  if (!page) return false;
  for (const platform::View* each = hit; each != outermost; each = each->superview()) {
    point = {point.x - each->frame().x, point.y - each->frame().y};
  }
  page->stringByEvaluatingJavaScriptFromString(std::string(kTap) + "(" + std::to_string(point.x) +
                                               "," + std::to_string(point.y) + ")");
  return true;
}

bool press(platform::Button& button) {
  return pressWidget(buttonIn(widgetOf(button)));
}

bool press(platform::InterfaceView& view, std::string_view control) {
  return pressWidget(buttonIn(widgetOf(view), control));
}

platform::Rect frameOf(const platform::InterfaceView& view, std::string_view control) {
  GtkWidget* const button = buttonIn(widgetOf(view), control);
  graphene_rect_t area;
  if (!button || !gtk_widget_compute_bounds(button, widgetOf(view), &area)) return {};
  return {area.origin.x, area.origin.y, area.size.width, area.size.height};
}

std::string tooltipOf(const platform::InterfaceView& view, std::string_view control) {
  GtkWidget* const button = buttonIn(widgetOf(view), control);
  const char* const text = button ? gtk_widget_get_tooltip_text(button) : nullptr;
  return text ? text : "";
}

}  // namespace quorbel_tests
