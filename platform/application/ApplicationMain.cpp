#include "platform/application/ApplicationMain.h"

#include <glib-unix.h>
#include <gtk/gtk.h>
#include <gtkmm/application.h>
#include <gtkmm/builder.h>

#include <algorithm>
#include <csignal>
#include <cstdio>

#include "platform/application/Appearance.h"
#include "platform/application/LinuxApplication.h"
#include "platform/application/MemoryWarnings.h"
#include "platform/application/SessionBus.h"
#include "platform/application/ShaderCache.h"
#include "platform/application/WindowState.h"
#include "platform/base/Log.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/RunLoop.h"
#include "platform/device/LinuxDevice.h"
#include "platform/device/Monitor.h"
#include "platform/storage/Bundle.h"
#include "platform/storage/UserDefaults.h"
#include "platform/ui/InterfaceView.h"
#include "platform/ui/NativeWindow.h"

namespace valdren::platform {
namespace {

constexpr Size kPhoneSize{360, 640};
constexpr Size kTabletSize{1024, 768};
/// Screens are laid out for at least this width.
constexpr int kNarrowest = 320;

InterfaceIdiom idiomOf(const ApplicationDescription& description) {
  return description.idiom.value_or(
      Device::shared().userInterfaceIdiom().value_or(InterfaceIdiom::Phone));
}

/// The initial size of the window, including the status bar.
Size firstSizeOf(const ApplicationDescription& description) {
  Size size = idiomOf(description) == InterfaceIdiom::Tablet ? kTabletSize : kPhoneSize;
  if (description.landscape && *description.landscape != (size.width > size.height)) {
    size = {size.height, size.width};
  }
  if (const auto monitor = primaryMonitor()) {
    size.width = std::min(size.width, monitor->room.width);
    size.height = std::min(size.height, monitor->room.height);
  }
  return size;
}

class Runner;
Runner* theRunner = nullptr;

/// One run of an application, from start-up to the exit status.
class Runner : public WeakTarget {
 public:
  explicit Runner(const ApplicationDescription& description) : description_(description) {
    const auto flags =
        description.alone ? Gio::Application::Flags::NON_UNIQUE : Gio::Application::Flags::NONE;
    application_ = Gtk::Application::create(description.identifier, flags);
    application_->set_resource_base_path(description.resourceBase);
    application_->property_register_session() = true;
    application_->signal_activate().connect([this] { activate(); });
    // The session may end the application without asking. This runs before the toolkit's own
    // handler, which ends the connection to the session.
    application_->signal_shutdown().connect(
        [this] {
          letSessionIdle();
          tellOfTheEnd();
        },
        false);
    theRunner = this;
  }

  ~Runner() {
    invalidateWeakReferences();
    theRunner = nullptr;
    release();
  }
  Runner(const Runner&) = delete;
  Runner& operator=(const Runner&) = delete;

  int run() {
    const int status = application_->run();
    return status_ ? status_ : status;
  }

  void terminate(int status) {
    if (terminating_) {
      application_->quit();
      return;
    }
    terminating_ = true;
    status_ = status;
    giveUpName();
    letSessionIdle();
    // A hidden window no longer keeps the application running.
    application_->hold();
    if (window_) window_->native().window().set_visible(false);
    tellOfTheEnd();
    // Background tasks get their granted time.
    auto& system = LinuxApplication::instance();
    system.beginToEnd();
    system.setIdleHandler([this] { application_->quit(); });
    if (system.backgroundTaskCount() == 0) application_->quit();
  }

 private:
  void activate() {
    if (terminating_) {
      startAnother();
      return;
    }
    if (window_) {
      window_->makeKeyAndVisible();
      return;
    }
    if (!launch()) {
      status_ = 1;
      application_->quit();
      return;
    }
    watchMemory();
    if (description_.started)
      RunLoop::shared().performAfterDelay(*this, kNextTurn, description_.started);
  }

  /// From now on a new start becomes an instance of its own and does not wait for this one.
  void giveUpName() {
    GDBusConnection* const bus =
        g_application_get_dbus_connection(G_APPLICATION(application_->gobj()));
    if (!bus || description_.alone) return;
    g_dbus_connection_call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "ReleaseName",
                           g_variant_new("(s)", description_.identifier.c_str()), nullptr,
                           G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
  }

  /// Serves a start that asked this instance for its window just before the name was released.
  void startAnother() {
    const char* arguments[] = {"/proc/self/exe", nullptr};
    GError* error = nullptr;
    if (g_spawn_async(nullptr, const_cast<char**>(arguments), nullptr, G_SPAWN_DEFAULT, nullptr,
                      nullptr, nullptr, &error)) {
      return;
    }
    logWarning(std::string("The application cannot be started again: ") + error->message);
    g_error_free(error);
  }

  bool launch() {
    if (description_.starting) description_.starting();
    // Before the first question: what the device tells is read only once.
    if (description_.idiom) LinuxDevice::instance().setIdiom(description_.idiom);
    const InterfaceIdiom idiom = idiomOf(description_);
    InterfaceView::setResourceBase(description_.resourceBase);
    followAppearance(description_.resourceBase);
    const std::string file = idiom == InterfaceIdiom::Tablet ? "tablet" : "phone";
    std::shared_ptr<ViewController> screen = screenOf(file);
    if (!screen) return false;
    openWindow();
    delegate_ = description_.makeDelegate();
    delegate_->setWindow(window_);
    delegate_->setViewController(std::move(screen));
    relayNotices();
    if (!delegate_->applicationDidFinishLaunching()) return false;
    NotificationCenter::defaultCenter().postNotificationName(kApplicationDidFinishLaunching,
                                                             &Application::shared());
    return true;
  }

  /// A screen of the class that the main interface file names as the id of its outermost object.
  std::shared_ptr<ViewController> screenOf(const std::string& file) const {
    const std::string resource = description_.resourceBase + "/" + file + ".ui";
    try {
      const auto text = Gio::Resource::lookup_data_global(resource);
      gsize length = 0;
      const auto* const bytes = static_cast<const char*>(text->get_data(length));
      const std::string_view content(bytes, length);
      for (const auto& [name, make] : description_.screens) {
        if (content.find("id=\"" + name + "\"") == std::string_view::npos) continue;
        std::shared_ptr<ViewController> screen = make();
        screen->setInterface(file, name);
        return screen;
      }
    } catch (const Glib::Error& error) {
      std::fprintf(stderr, "%s: the interface file cannot be read: %s\n", description_.name.c_str(),
                   error.what());
      return nullptr;
    }
    std::fprintf(stderr, "%s: the interface file \"%s.ui\" names no screen.\n",
                 description_.name.c_str(), file.c_str());
    return nullptr;
  }

  void openWindow() {
    window_ = std::make_shared<Window>(firstSizeOf(description_));
    window_->setTitle(description_.name);
    Gtk::Window& window = window_->native().window();
    window.property_width_request() = kNarrowest;
    application_->add_window(window);
    window.set_icon_name(description_.identifier);
    markHighContrast(window);
    window.signal_close_request().connect(
        [this] {
          terminate(0);
          return true;
        },
        false);
    followWindowState(window.gobj());
    LinuxApplication::instance().setInhibitor([this](bool inhibited) { inhibitIdle(inhibited); });
  }

  void inhibitIdle(bool inhibited) {
    if (inhibitCookie_) application_->uninhibit(inhibitCookie_);
    inhibitCookie_ = inhibited ? application_->inhibit(window_->native().window(),
                                                       Gtk::Application::InhibitFlags::IDLE,
                                                       "A full-screen page is shown")
                               : 0;
  }

  /// From now on no screen can keep the session awake.
  void letSessionIdle() {
    LinuxApplication::instance().setInhibitor({});
    if (window_) inhibitIdle(false);
  }

  void relayNotices() {
    relay(kApplicationWillResignActive, &ApplicationDelegate::applicationWillResignActive);
    relay(kApplicationDidEnterBackground, &ApplicationDelegate::applicationDidEnterBackground);
    relay(kApplicationWillEnterForeground, &ApplicationDelegate::applicationWillEnterForeground);
    relay(kApplicationDidBecomeActive, &ApplicationDelegate::applicationDidBecomeActive);
  }

  void relay(const char* notice, void (ApplicationDelegate::*hook)()) {
    NotificationCenter::defaultCenter().addObserver(
        *this, notice, [this, hook](const Notification&) { tell(hook); });
  }

  void tell(void (ApplicationDelegate::*hook)()) {
    if (delegate_) (delegate_.get()->*hook)();
  }

  void tellOfTheEnd() {
    if (toldOfTheEnd_ || !delegate_) return;
    toldOfTheEnd_ = true;
    LinuxApplication::instance().enterBackground();
    tell(&ApplicationDelegate::applicationWillTerminate);
    NotificationCenter::defaultCenter().postNotificationName(kApplicationWillTerminate,
                                                             &Application::shared());
    UserDefaults::shared().flush();
  }

  /// Forwards low-memory notices to the delegate, observers and screens.
  void watchMemory() {
    memory_ = std::make_unique<MemoryWarnings>([this] {
      tell(&ApplicationDelegate::applicationDidReceiveMemoryWarning);
      NotificationCenter::defaultCenter().postNotificationName(kApplicationDidReceiveMemoryWarning,
                                                               &Application::shared());
      window_->didReceiveMemoryWarning();
    });
  }

  void release() {
    auto& system = LinuxApplication::instance();
    system.setIdleHandler({});
    memory_.reset();
    if (!window_) return;
    application_->remove_window(window_->native().window());
    delegate_.reset();
    window_->setRootViewController(nullptr);
    window_.reset();
  }

  const ApplicationDescription& description_;
  Glib::RefPtr<Gtk::Application> application_;
  std::unique_ptr<ApplicationDelegate> delegate_;
  std::shared_ptr<Window> window_;
  std::unique_ptr<MemoryWarnings> memory_;
  guint inhibitCookie_ = 0;
  int status_ = 0;
  bool terminating_ = false;
  bool toldOfTheEnd_ = false;
};

/// While it exists, SIGTERM, SIGINT and SIGHUP end the application in order.
class EndingSignals {
 public:
  EndingSignals() {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
      sources_.push_back(g_unix_signal_add(signal, end, nullptr));
    }
  }
  ~EndingSignals() { std::for_each(sources_.begin(), sources_.end(), g_source_remove); }
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

 private:
  static gboolean end(gpointer) {
    terminateApplication(0);
    return G_SOURCE_CONTINUE;
  }

  std::vector<guint> sources_;
};

}  // namespace

bool hasDisplay() {
  // The toolkit uses both as soon as it opens a display.
  leaveSilentSessionBus();
  leaveShaderCacheWithoutRoom();
  // later calls of gtk_init_check always return true
  return gtk_init_check() && gdk_display_get_default();
}

int applicationMain(const ApplicationDescription& description) {
  Bundle::main().setIdentifier(description.identifier);
  Bundle::main().setVersion(description.version);
  if (!hasDisplay()) {
    std::fprintf(stderr,
                 "%s: there is no display to open a window on. Start it in a desktop session, or "
                 "set DISPLAY or WAYLAND_DISPLAY.\n",
                 description.name.c_str());
    return 1;
  }
  if (!g_get_application_name()) g_set_application_name(description.name.c_str());
  Runner runner(description);
  const EndingSignals signals;
  return runner.run();
}

void terminateApplication(int status) {
  if (theRunner) theRunner->terminate(status);
}

}  // namespace valdren::platform
