// Opens the user's mail program with a prepared mail. Only the user sends it.
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

/// Only the body may hold line breaks and other control characters.
struct MailMessage {
  std::vector<std::string> toRecipients;
  std::vector<std::string> ccRecipients;
  std::vector<std::string> bccRecipients;
  std::string subject;
  std::string body;

  /// The same as a "mailto:" URL, percent-encoded. None over 2 MiB.
  std::optional<URL> mailtoURL() const;
};

/// Opens the user's mail program.
class MailService : public Shared<MailService> {
 public:
  /// The desktop portal, or, without one, the default handler of "mailto:".
  static MailService& standard();
  virtual ~MailService() = default;
  /// Calls `finished` once, later, when the mail has been handed over or this has failed. It fails
  /// without a recent touch or key of the user (see `LaunchPermit`).
  virtual void compose(const MailMessage& message, std::function<void(MailResult)> finished) = 0;
};

class MailComposer;

class MailComposerDelegate : public virtual WeakTarget {
 public:
  virtual void mailComposerDidFinish(MailComposer& composer, MailResult result) = 0;

 protected:
  ~MailComposerDelegate() = default;
};

/// One mail to write. Made with `std::make_shared`; once presented it lives until the delegate has
/// been called.
class MailComposer : public WeakTarget, public std::enable_shared_from_this<MailComposer> {
 public:
  void setDelegate(WeakPtr<MailComposerDelegate> delegate) { delegate_ = delegate; }
  void setToRecipients(const std::vector<std::string>& recipients);
  void setCcRecipients(const std::vector<std::string>& recipients);
  void setBccRecipients(const std::vector<std::string>& recipients);
  void setSubject(const std::string& subject);
  /// Plain text.
  void setMessageBody(const std::string& body);
  const MailMessage& message() const { return message_; }

  ModalTransitionStyle modalTransitionStyle() const { return transitionStyle_; }
  void setModalTransitionStyle(ModalTransitionStyle style) { transitionStyle_ = style; }

  /// Opens the mail program over `viewController`. A second call does nothing.
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
