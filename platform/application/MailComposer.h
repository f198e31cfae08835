// Writing a mail in the person's own mail program, filled in beforehand. Nothing is sent until the
// person sends it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/Shared.h"
#include "platform/base/URL.h"
#include "platform/ui/ViewController.h"

namespace valdren::platform {

enum class MailResult { Done, Cancelled, Failed };

/// Line breaks and other control characters have no place in any of these but the body.
struct MailMessage {
  std::vector<std::string> toRecipients;
  std::vector<std::string> ccRecipients;
  std::vector<std::string> bccRecipients;
  std::string subject;
  std::string body;

  /// The "mailto:" URL that says the same, everything percent-encoded; none over 2 MiB.
  std::optional<URL> mailtoURL() const;
};

/// What opens the person's mail program.
class MailService : public Shared<MailService> {
 public:
  /// The desktop portal, or, without one, the default handler of "mailto:".
  static MailService& standard();
  virtual ~MailService() = default;
  /// Calls `finished` once, later, when the mail has been handed over or cannot be. It cannot
  /// unless a touch or key of the person stands behind it (see `LaunchPermit`).
  virtual void compose(const MailMessage& message, std::function<void(MailResult)> finished) = 0;
};

class MailComposer;

class MailComposerDelegate : public virtual Trackable {
 public:
  virtual void mailComposerDidFinish(MailComposer& composer, MailResult result) = 0;

 protected:
  ~MailComposerDelegate() = default;
};

/// One mail to be written. Made with `std::make_shared`; once presented it lives until the delegate
/// has been told.
class MailComposer : public Trackable, public std::enable_shared_from_this<MailComposer> {
 public:
  void setDelegate(WeakPtr<MailComposerDelegate> delegate) { delegate_ = delegate; }
  void setToRecipients(std::vector<std::string> recipients);
  void setCcRecipients(std::vector<std::string> recipients);
  void setBccRecipients(std::vector<std::string> recipients);
  void setSubject(const std::string& subject);
  /// Plain text.
  void setMessageBody(std::string body);
  const MailMessage& message() const { return message_; }

  ModalTransitionStyle modalTransitionStyle() const { return transitionStyle_; }
  void setModalTransitionStyle(ModalTransitionStyle style) { transitionStyle_ = style; }

  /// Opens the mail program over `viewController`; nothing the second time.
  void present(ViewController& viewController);
  ViewController* presentingViewController() const { return presenting_.get(); }

 private:
  WeakPtr<MailComposerDelegate> delegate_;
  WeakPtr<ViewController> presenting_;
  MailMessage message_;
  ModalTransitionStyle transitionStyle_ = ModalTransitionStyle::CoverVertical;
  bool presented_ = false;
};

}  // namespace valdren::platform
