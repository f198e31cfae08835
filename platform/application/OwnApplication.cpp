#include "platform/application/OwnApplication.h"

#include <string>

#include "platform/application/Appearance.h"
#include "platform/application/MainInterface.h"
#include "platform/application/MainMenu.h"
#include "platform/application/WindowMemory.h"
#include "platform/application/WindowState.h"
#include "platform/base/Log.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/RunLoop.h"
#include "platform/device/LinuxDevice.h"
#include "platform/ui/InterfaceView.h"
#include "platform/ui/NativeWindow.h"

namespace valdren::platform {
namespace {

/// Screens are laid out for at least this width.
constexpr int kNarrowest = 320;

OwnApplication* theRunning = nullptr;

}  // namespace

OwnApplication* OwnApplication::running() {
  return theRunning;
}

OwnApplication::OwnApplication(const ApplicationDescription& description)
    : description_(description) {
  const auto flags =
      description.alone ? Gio::Application::Flags::NON_UNIQUE : Gio::Application::Flags::NONE;
  application_ = Gtk::Application::create(description.identifier, flags);
  application_->set_resource_base_path(description.resourceBase);
  application_->property_register_session() = true;
  application_->signal_activate().connect([this] { activate(); });
  // The session may end the application without asking. This runs before the toolkit's own
  // handler, which ends the connection to the session.
  application_->signal_shutdown().connect([this] { tellOfTheEnd(); }, false);
  theRunning = this;
}

OwnApplication::~OwnApplication() {
  invalidateWeakReferences();
  theRunning = nullptr;
  system_.setAdapter(nullptr);
  if (!window_) return;
  application_->remove_window(window_->native().window());
  delegate_.reset();
  window_->setRootViewController(nullptr);
}

int OwnApplication::run() {
  const int status = application_->run();
  return status_.value_or(status);
}

void OwnApplication::terminate(int status) {
  if (terminating_) {
    application_->quit();
    return;
  }
  terminating_ = true;
  status_ = status;
  giveUpName();
  // A hidden window no longer keeps the application running.
  application_->hold();
  if (window_) hideWindow();
  tellOfTheEnd();
  // Background tasks get their granted time.
  system_.beginToEnd();
  if (system_.backgroundTaskCount() == 0) application_->quit();
}

void OwnApplication::hideWindow() {
  Gtk::Window& window = window_->native().window();
  // A page may have turned it.
  if (window_->topViewController() == window_->rootViewController().get()) {
    rememberSize(idiomOf(description_), window.gobj(), window_->size());
  }
  window.set_visible(false);
}

void OwnApplication::setHeld(bool held) {
  if (held) {
    application_->hold();
  } else if (terminating_) {
    application_->quit();
  } else {
    application_->release();
  }
}

void OwnApplication::setIdleInhibited(bool inhibited) {
  if (inhibitCookie_) application_->uninhibit(inhibitCookie_);
  inhibitCookie_ = 0;
  // The end has no connection to the session any longer.
  if (!inhibited || terminating_) return;
  inhibitCookie_ =
      application_->inhibit(window_->native().window(), Gtk::Application::InhibitFlags::IDLE,
                            "A full-screen page is shown");
}

void OwnApplication::activate() {
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
  if (description_.started)
    RunLoop::shared().performAfterDelay(*this, kNextTurn, description_.started);
}

/// From now on a new start becomes an instance of its own and does not wait for this one.
void OwnApplication::giveUpName() {
  GDBusConnection* const bus =
      g_application_get_dbus_connection(G_APPLICATION(application_->gobj()));
  if (!bus || description_.alone) return;
  g_dbus_connection_call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                         "org.freedesktop.DBus", "ReleaseName",
                         g_variant_new("(s)", description_.identifier.c_str()), nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
}

/// Serves a start that asked this instance for its window just before the name was released.
void OwnApplication::startAnother() {
  const char* arguments[] = {"/proc/self/exe", nullptr};
  GError* error = nullptr;
  if (g_spawn_async(nullptr, const_cast<char**>(arguments), nullptr, G_SPAWN_DEFAULT, nullptr,
                    nullptr, nullptr, &error)) {
    return;
  }
  logWarning(std::string("The application cannot be started again: ") + error->message);
  g_error_free(error);
}

bool OwnApplication::launch() {
  if (description_.starting) description_.starting();
  // Before the first question: what the device tells is read only once.
  if (description_.idiom) LinuxDevice::instance().setIdiom(description_.idiom);
  InterfaceView::setResourceBase(description_.resourceBase);
  followAppearance(description_.resourceBase);
  std::shared_ptr<ViewController> screen = firstScreenOf(description_);
  if (!screen) return false;
  openWindow();
  delegate_ = description_.makeDelegate();
  delegate_->setWindow(window_);
  delegate_->setViewController(std::move(screen));
  relayNotices();
  if (!delegate_->applicationDidFinishLaunching()) return false;
  system_.finishLaunching();
  return true;
}

void OwnApplication::openWindow() {
  window_ = std::make_shared<Window>(firstSizeOf(description_));
  window_->setTitle(description_.name);
  Gtk::Window& window = window_->native().window();
  window.property_width_request() = kNarrowest;
  application_->add_window(window);
  window.set_icon_name(description_.identifier);
  markHighContrast(window);
  addMainMenu(*application_.get(), window, description_);
  window.signal_close_request().connect(
      [this] {
        terminate(0);
        return true;
      },
      false);
  followWindowState(window.gobj());
  system_.setAdapter(this);
}

/// Before any other observer, since the delegate is told first.
void OwnApplication::relayNotices() {
  relay(kApplicationWillResignActive, &ApplicationDelegate::applicationWillResignActive);
  relay(kApplicationDidEnterBackground, &ApplicationDelegate::applicationDidEnterBackground);
  relay(kApplicationWillEnterForeground, &ApplicationDelegate::applicationWillEnterForeground);
  relay(kApplicationDidBecomeActive, &ApplicationDelegate::applicationDidBecomeActive);
  relay(kApplicationWillTerminate, &ApplicationDelegate::applicationWillTerminate);
  relay(kApplicationDidReceiveMemoryWarning,
        &ApplicationDelegate::applicationDidReceiveMemoryWarning);
  NotificationCenter::defaultCenter().addObserver(
      *this, kApplicationDidReceiveMemoryWarning,
      [this](const Notification&) { window_->didReceiveMemoryWarning(); });
}

void OwnApplication::relay(const char* notice, void (ApplicationDelegate::*hook)()) {
  NotificationCenter::defaultCenter().addObserver(*this, notice, [this, hook](const Notification&) {
    if (delegate_) (delegate_.get()->*hook)();
  });
}

void OwnApplication::tellOfTheEnd() {
  // From now on no screen can keep the session awake.
  terminating_ = true;
  setIdleInhibited(false);
  if (delegate_) system_.terminate();
}

}  // namespace valdren::platform
