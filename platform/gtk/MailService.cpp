#include <gio/gio.h>
#include <libportal/portal.h>

#include "platform/Application.h"
#include "platform/Log.h"
#include "platform/MailComposer.h"
#include "platform/RunLoop.h"

namespace platform {
namespace {

using Finished = std::function<void(MailResult)>;

/// A null-terminated list of texts that others own, or null for none.
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

void openWithDefaultHandler(const MailMessage& message, const Finished& finished) {
  const std::optional<URL> url = message.mailtoURL();
  if (url) Application::shared().openURL(*url);
  finished(url ? MailResult::Done : MailResult::Failed);
}

struct Call {
  MailMessage message;
  Finished finished;
};

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
    openWithDefaultHandler(call->message, call->finished);
  }
}

class DesktopMailService final : public MailService {
 public:
  void compose(const MailMessage& message, Finished finished) override {
    XdpPortal* const portal = this->portal();
    if (!portal) {
      RunLoop::shared().performAfterDelay(0, [message, finished = std::move(finished)] {
        openWithDefaultHandler(message, finished);
      });
      return;
    }
    const TextList to(message.toRecipients);
    const TextList cc(message.ccRecipients);
    const TextList bcc(message.bccRecipients);
    xdp_portal_compose_email(portal, nullptr, to.get(), cc.get(), bcc.get(),
                             message.subject.c_str(), message.body.c_str(), nullptr,
                             XDP_EMAIL_FLAG_NONE, nullptr, composed,
                             new Call{message, std::move(finished)});
  }

 private:
  /// Null without a session bus, which the library takes for granted.
  XdpPortal* portal() {
    if (portal_) return portal_;
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (!bus) return nullptr;
    g_object_unref(bus);
    portal_ = xdp_portal_new();
    return portal_;
  }

  XdpPortal* portal_ = nullptr;
};

}  // namespace

MailService& MailService::standard() {
  // Never destroyed: an answer may be on its way while the process ends.
  static auto* const service = new DesktopMailService;
  return *service;
}

}  // namespace platform
