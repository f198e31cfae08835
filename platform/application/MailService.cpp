#include <gio/gio.h>
#include <libportal/portal.h>

#include "platform/application/MailComposer.h"
#include "platform/base/Log.h"
#include "platform/base/RunLoop.h"
#include "platform/device/Launches.h"
#include "platform/ui/LaunchPermit.h"

namespace valdren::platform {
namespace {

using Finished = std::function<void(MailResult)>;

/// A null-terminated list of texts that it does not own; null when there is none.
class TextList {
 public:
  explicit TextList(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) pointers_.push_back(text.c_str());
    pointers_.push_back(nullptr);
  }
  const char* const* get() const { return pointers_.size() > 1 ? pointers_.data() : nullptr; }

 private:
  std::vector<const char*> pointers_;
};

struct Call {
  MailMessage message;
  Finished finished;
  LaunchPermit::Touch touch;
};

void openWithDefaultHandler(const Call& call) {
  const std::optional<URL> url = call.message.mailtoURL();
  if (url) launch(*url, call.touch);
  call.finished(url ? MailResult::Done : MailResult::Failed);
}

void composed(GObject* portal, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Call> call(static_cast<Call*>(data));
  GError* error = nullptr;
  if (xdp_portal_compose_email_finish(XDP_PORTAL(portal), result, &error)) {
    call->finished(MailResult::Done);
    return;
  }
  const bool cancelled = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
  if (!cancelled) logDebug(std::string("No mail portal: ") + error->message);
  g_error_free(error);
  if (cancelled) {
    call->finished(MailResult::Cancelled);
  } else {
    openWithDefaultHandler(*call);
  }
}

/// Never freed: libportal answers to it until the process ends.
XdpPortal* thePortal() {
  static XdpPortal* const portal = xdp_portal_new();
  return portal;
}

void composeInPortal(std::unique_ptr<Call> call) {
  const MailMessage message = call->message;
  const TextList to(message.toRecipients);
  const TextList cc(message.ccRecipients);
  const TextList bcc(message.bccRecipients);
  xdp_portal_compose_email(thePortal(), nullptr, to.get(), cc.get(), bcc.get(),
                           message.subject.c_str(), message.body.c_str(), nullptr,
                           XDP_EMAIL_FLAG_NONE, nullptr, composed, call.release());
}

/// libportal assumes that there is a portal, so the bus is asked for one first.
void portalStarted(GObject* bus, GAsyncResult* result, gpointer data) {
  std::unique_ptr<Call> call(static_cast<Call*>(data));
  GVariant* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr);
  if (!answer) {
    logDebug("There is no portal to write mails with.");
    openWithDefaultHandler(*call);
    return;
  }
  g_variant_unref(answer);
  composeInPortal(std::move(call));
}

void busFound(GObject*, GAsyncResult* result, gpointer data) {
  std::unique_ptr<Call> call(static_cast<Call*>(data));
  GDBusConnection* const bus = g_bus_get_finish(result, nullptr);
  if (!bus) {
    openWithDefaultHandler(*call);
    return;
  }
  g_dbus_connection_call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                         "org.freedesktop.DBus", "StartServiceByName",
                         g_variant_new("(su)", "org.freedesktop.portal.Desktop", 0u), nullptr,
                         G_DBUS_CALL_FLAGS_NONE, -1, nullptr, portalStarted, call.release());
  g_object_unref(bus);
}

class DesktopMailService final : public MailService {
 public:
  void compose(const MailMessage& message, Finished finished) override {
    const LaunchPermit::Touch touch = LaunchPermit::shared().use("a mail to be written");
    if (!touch) {
      RunLoop::shared().performAfterDelay(kNextTurn, [finished] { finished(MailResult::Failed); });
      return;
    }
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, busFound, new Call{message, std::move(finished), touch});
  }
};

}  // namespace

MailService& MailService::standard() {
  // Never destroyed: an answer may arrive while the process ends.
  static auto* const service = new DesktopMailService;
  return *service;
}

}  // namespace valdren::platform
