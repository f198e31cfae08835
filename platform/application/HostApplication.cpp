#include "platform/application/HostApplication.h"

#include <errno.h>
#include <gtk/gtk.h>

#include <string>
#include <utility>

#include "platform/base/RunLoop.h"
#include "platform/storage/Bundle.h"

namespace valdren::platform {
namespace {

/// Each application has state of its own: one without an identifier has it by its program's name.
void nameApplication(GApplication* application) {
  Bundle& bundle = Bundle::main();
  if (bundle.isIdentifierSet()) return;
  const char* const identifier =
      application ? g_application_get_application_id(application) : nullptr;
  // The toolkit knows a name only if the program told it one.
  const char* const told = g_get_prgname();
  const std::string program = told ? told : program_invocation_short_name;
  if (identifier) {
    bundle.setIdentifier(identifier);
  } else if (!program.empty()) {
    bundle.setIdentifier(bundle.identifier() + "." + program);
  }
}

}  // namespace

void HostApplication::follow() {
  static bool started = false;
  GApplication* const application = g_application_get_default();
  if (!std::exchange(started, true)) {
    RunLoop::shared().performAfterDelay(kNextTurn,
                                        [] { LinuxApplication::instance().finishLaunching(); });
    nameApplication(application);
  }
  // Never destroyed: it is needed until the process ends.
  static HostApplication* host = nullptr;
  if (host || !application) return;
  host = new HostApplication(application);
  LinuxApplication::instance().setAdapter(host);
}

HostApplication::HostApplication(GApplication* application) : application_(application) {
  const auto ends = +[](GApplication*, gpointer) {
    LinuxApplication::instance().terminate();
    LinuxApplication::instance().setAdapter(nullptr);
  };
  g_signal_connect(application, "shutdown", G_CALLBACK(ends), nullptr);
  if (!GTK_IS_APPLICATION(application)) return;
  const auto removed = +[](GtkApplication* application, GtkWindow*, gpointer) {
    if (!gtk_application_get_windows(application)) LinuxApplication::instance().loseLastWindow();
  };
  g_signal_connect_after(application, "window-removed", G_CALLBACK(removed), nullptr);
}

void HostApplication::setHeld(bool held) {
  held ? g_application_hold(application_) : g_application_release(application_);
}

void HostApplication::setIdleInhibited(bool inhibited) {
  if (!GTK_IS_APPLICATION(application_)) return;
  GtkApplication* const application = GTK_APPLICATION(application_);
  if (inhibitCookie_) gtk_application_uninhibit(application, std::exchange(inhibitCookie_, 0));
  if (!inhibited) return;
  inhibitCookie_ =
      gtk_application_inhibit(application, gtk_application_get_active_window(application),
                              GTK_APPLICATION_INHIBIT_IDLE, "A full-screen page is shown");
}

}  // namespace valdren::platform
