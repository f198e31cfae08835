// The product's own application: its window, its delegate, its end.
#pragma once

#include <gtkmm/application.h>

#include <memory>
#include <optional>

#include "platform/application/ApplicationMain.h"
#include "platform/application/LinuxApplication.h"

namespace valdren::platform {

/// One run, from start-up to the exit status.
class OwnApplication final : public ApplicationAdapter, public WeakTarget {
 public:
  /// The description must outlive this object.
  explicit OwnApplication(const ApplicationDescription& description);
  ~OwnApplication() override;
  OwnApplication(const OwnApplication&) = delete;
  OwnApplication& operator=(const OwnApplication&) = delete;

  /// The one that exists, or null.
  static OwnApplication* running();

  /// Returns the exit status.
  int run();
  /// Ends the run once all background tasks have ended, the second time at once.
  void terminate(int status);

  void setHeld(bool held) override;
  void setIdleInhibited(bool inhibited) override;

 private:
  void activate();
  bool launch();
  void openWindow();
  void giveUpName();
  void startAnother();
  void relayNotices();
  void relay(const char* notice, void (ApplicationDelegate::*hook)());
  void hideWindow();
  void tellOfTheEnd();

  const ApplicationDescription& description_;
  LinuxApplication& system_ = LinuxApplication::instance();
  Glib::RefPtr<Gtk::Application> application_;
  std::unique_ptr<ApplicationDelegate> delegate_;
  std::shared_ptr<Window> window_;
  guint inhibitCookie_ = 0;
  std::optional<int> status_;
  bool terminating_ = false;
};

}  // namespace valdren::platform
