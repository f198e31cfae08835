#include "platform/application/WindowState.h"

#include <gtk/gtk.h>

#include <utility>

#include "platform/application/LinuxApplication.h"
#include "platform/ui/FrameProbe.h"

namespace valdren::platform {
namespace {

constexpr unsigned kBeatMilliseconds = 500;
/// After so many missed beats no frame is expected any more; a busy compositor may be late.
constexpr int kMostMissedBeats = 3;
/// GDK_TOPLEVEL_STATE_SUSPENDED, which a newer toolkit at run time sets and an older one's headers
/// lack.
constexpr unsigned kSuspended = 1u << 16;

constexpr const char* kSightKey = "quorbel-sight";

int followedWindows = 0;
bool beats = false;
bool lookIsDue = false;
bool anyWasMapped = false;

void look();

void lookSoon() {
  if (lookIsDue) return;
  lookIsDue = true;
  g_idle_add_once([](gpointer) { look(); }, nullptr);
}

/// The state of one window.
class Sight {
 public:
  explicit Sight(GtkWindow* window) : window_(window), probe_(window, [this] { answered(); }) {
    g_signal_connect(window, "map", G_CALLBACK(lookSoon), nullptr);
    g_signal_connect_swapped(window, "unmap", G_CALLBACK(+[](Sight* sight) { sight->unmapped(); }),
                             this);
    g_signal_connect_swapped(window, "realize",
                             G_CALLBACK(+[](Sight* sight) { sight->realized(); }), this);
    if (gtk_widget_get_realized(GTK_WIDGET(window))) realized();
  }

  static Sight& of(GtkWindow* window) {
    auto* known = static_cast<Sight*>(g_object_get_data(G_OBJECT(window), kSightKey));
    if (!known) {
      known = new Sight(window);
      g_object_set_data_full(G_OBJECT(window), kSightKey, known,
                             [](gpointer sight) { delete static_cast<Sight*>(sight); });
    }
    return *known;
  }

  bool isMapped() const { return gtk_widget_get_mapped(GTK_WIDGET(window_)); }

  bool isSeen() const {
    if (!isMapped() || missedBeats_ >= kMostMissedBeats) return false;
    GdkSurface* const surface = gtk_native_get_surface(GTK_NATIVE(window_));
    const unsigned state = gdk_toplevel_get_state(GDK_TOPLEVEL(surface));
    return !(state & (GDK_TOPLEVEL_STATE_MINIMIZED | kSuspended));
  }

  /// Requests a frame at every second beat, and counts the beats that a frame is late.
  void beat() {
    if (!isMapped()) return;
    if (probe_.isWaiting()) {
      if (missedBeats_ < kMostMissedBeats) ++missedBeats_;
      return;
    }
    missedBeats_ = 0;
    rests_ = !rests_;
    if (!rests_) probe_.ask();
  }

 private:
  void answered() {
    const bool wasMissed = missedBeats_ >= kMostMissedBeats;
    missedBeats_ = 0;
    if (wasMissed) lookSoon();
  }

  void unmapped() {
    probe_.drop();
    missedBeats_ = 0;
    lookSoon();
  }

  void realized() {
    g_signal_connect(gtk_native_get_surface(GTK_NATIVE(window_)), "notify::state",
                     G_CALLBACK(stateChanged), nullptr);
  }

  /// The window's visibility may have changed: asks for a frame without waiting for the next beat.
  static void stateChanged(GdkSurface* surface) {
    GtkNative* const window = gtk_native_get_for_surface(surface);
    if (!window) return;
    Sight& sight = of(GTK_WINDOW(window));
    if (sight.isMapped()) {
      sight.probe_.drop();
      sight.probe_.ask();
    }
    lookSoon();
  }

  GtkWindow* window_;
  FrameProbe probe_;
  int missedBeats_ = 0;
  bool rests_ = true;
};

/// Calls the function with each window of the application.
template <typename Function>
void forEachWindow(Function function) {
  GListModel* const windows = gtk_window_get_toplevels();
  for (guint place = 0; place < g_list_model_get_n_items(windows); ++place) {
    auto* const window = static_cast<GtkWindow*>(g_list_model_get_item(windows, place));
    function(Sight::of(window));
    g_object_unref(window);
  }
}

bool isLocked() {
  GApplication* const application = g_application_get_default();
  if (!application || !GTK_IS_APPLICATION(application)) return false;
  gboolean locked = FALSE;
  g_object_get(application, "screensaver-active", &locked, nullptr);
  return locked;
}

void look() {
  lookIsDue = false;
  if (followedWindows == 0) return;
  bool seen = false;
  forEachWindow([&](const Sight& sight) {
    anyWasMapped = anyWasMapped || sight.isMapped();
    seen = seen || sight.isSeen();
  });
  if (!anyWasMapped) return;
  if (seen && !isLocked()) {
    LinuxApplication::instance().enterForeground();
  } else {
    LinuxApplication::instance().enterBackground();
  }
}

gboolean beat(gpointer) {
  beats = followedWindows > 0;
  if (!beats) return G_SOURCE_REMOVE;
  forEachWindow([](Sight& sight) { sight.beat(); });
  look();
  return G_SOURCE_CONTINUE;
}

}  // namespace

void followWindowState(GtkWindow* window) {
  Sight::of(window);
  ++followedWindows;
  // One beat for all: of several, each would count what the others have just asked for as late.
  if (!std::exchange(beats, true)) g_timeout_add(kBeatMilliseconds, beat, nullptr);
  g_object_weak_ref(
      G_OBJECT(window), [](gpointer, GObject*) { --followedWindows; }, nullptr);
}

}  // namespace valdren::platform
