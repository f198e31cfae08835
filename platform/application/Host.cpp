#include "platform/application/Host.h"

#include <gtk/gtk.h>
#include <gtkmm/window.h>

#include "platform/application/HostApplication.h"
#include "platform/application/WindowState.h"
#include "platform/base/Log.h"
#include "platform/base/NotificationCenter.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/NativeWindow.h"
#include "platform/ui/Settling.h"
#include "platform/ui/Touches.h"
#include "platform/ui/Window.h"

namespace valdren::platform {
namespace {

constexpr const char* kScreenKey = "valdren-host-screen";
constexpr Size kStandardSize{320, 50};
constexpr const char* kViewKey = "valdren-host-view";

/// Accepts every orientation, as the application's own window does.
class HostScreen final : public ViewController {
 public:
  bool shouldAutorotateToInterfaceOrientation(InterfaceOrientation) override { return true; }
};

/// The state for one window of the application: a window over it, shown while it is needed.
struct Host : WeakTarget {
  explicit Host(GtkWindow* window) : over(std::make_shared<Window>(sizeOf(window))) {
    over->setShownForModalsOnly(true);
    over->setStatusBarHidden(true);
    over->setRootViewController(screen);
    Gtk::Window& native = over->native().window();
    gtk_window_set_transient_for(native.gobj(), window);
    gtk_window_set_modal(native.gobj(), TRUE);
    NotificationCenter::defaultCenter().addObserver(
        *this, kApplicationDidReceiveMemoryWarning,
        [this](const Notification&) { over->didReceiveMemoryWarning(); });
  }

  static Size sizeOf(GtkWindow* window) {
    int width = gtk_widget_get_width(GTK_WIDGET(window));
    int height = gtk_widget_get_height(GTK_WIDGET(window));
    if (width <= 0 || height <= 0) gtk_window_get_default_size(window, &width, &height);
    return {width > 0 ? double(width) : 360, height > 0 ? double(height) : 640};
  }

  std::shared_ptr<HostScreen> screen = std::make_shared<HostScreen>();
  std::shared_ptr<Window> over;
};

void followSize(GtkWindow* window, Host& host) {
  const auto resized = +[](GtkWindow* window, GParamSpec*, gpointer host) {
    static_cast<Host*>(host)->over->resize(Host::sizeOf(window));
  };
  for (const char* property : {"notify::default-width", "notify::default-height"}) {
    g_signal_connect(window, property, G_CALLBACK(resized), &host);
  }
  followSettling(window);
  NotificationCenter::defaultCenter().addObserver(
      host, kWindowDidSettle,
      [&host, window](const Notification&) { host.over->resize(Host::sizeOf(window)); }, window);
}

}  // namespace

GtkWidget* hostWidget(std::shared_ptr<View> view) {
  if (!view || view->superview()) {
    logWarning(view ? "<Valdren> The view is inside another view and cannot become a widget."
                    : "<Valdren> There is no view to make a widget from.");
    return nullptr;
  }
  GtkWidget* const widget = GTK_WIDGET(view->native().widget().gobj());
  watchTouches(view->native().widget(), *view);
  Rect frame = view->frame();
  if (frame.width <= 0 || frame.height <= 0) {
    frame.width = kStandardSize.width;
    frame.height = kStandardSize.height;
  }
  GtkWidget* const place = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_widget_set_halign(place, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(place, GTK_ALIGN_CENTER);
  gtk_widget_set_size_request(widget, int(frame.width), int(frame.height));
  gtk_box_append(GTK_BOX(place), widget);
  // Removed before the view is destroyed, because the view destroys its widget itself.
  g_signal_connect(place, "destroy", G_CALLBACK(+[](GtkWidget* box, gpointer) {
                     while (GtkWidget* child = gtk_widget_get_first_child(box)) {
                       gtk_box_remove(GTK_BOX(box), child);
                     }
                     g_object_set_data(G_OBJECT(box), kViewKey, nullptr);
                   }),
                   nullptr);
  g_object_set_data_full(G_OBJECT(place), kViewKey, new std::shared_ptr<View>(std::move(view)),
                         [](gpointer kept) { delete static_cast<std::shared_ptr<View>*>(kept); });
  return place;
}

ViewController* hostScreen(GtkWindow* window) {
  if (!window) {
    logWarning("<Valdren> There is no window to make a screen from.");
    return nullptr;
  }
  HostApplication::follow();
  if (auto* const known = static_cast<Host*>(g_object_get_data(G_OBJECT(window), kScreenKey))) {
    return known->screen.get();
  }
  auto* const host = new Host(window);
  followSize(window, *host);
  followWindowState(window);
  g_signal_connect(window, "destroy", G_CALLBACK(+[](GtkWindow* gone, gpointer) {
                     g_object_set_data(G_OBJECT(gone), kScreenKey, nullptr);
                   }),
                   nullptr);
  g_object_set_data_full(G_OBJECT(window), kScreenKey, host,
                         [](gpointer kept) { delete static_cast<Host*>(kept); });
  host->over->makeKey();
  return host->screen.get();
}

}  // namespace valdren::platform
