#include "platform/application/MailComposer.h"

#include <algorithm>

#include "platform/base/PercentEncoding.h"
#include "platform/base/Text.h"

namespace valdren::platform {
namespace {

/// A line break would start a header that the page chooses.
std::string headerText(const std::string& text) {
  std::string line = repairedUTF8(text);
  std::replace_if(
      line.begin(), line.end(),
      [](unsigned char character) { return character < 0x20 || character == 0x7f; }, ' ');
  return std::string(trimmed(line));
}

/// Drops empty texts.
std::vector<std::string> headerTexts(const std::vector<std::string>& texts) {
  std::vector<std::string> lines;
  for (const std::string& text : texts) {
    std::string line = headerText(text);
    if (!line.empty()) lines.push_back(std::move(line));
  }
  return lines;
}

std::string encoded(const std::string& text) {
  return percentEncoded(text, "-._~@");
}

std::string joined(const std::vector<std::string>& texts) {
  std::string url;
  for (const std::string& text : texts) {
    if (!url.empty()) url += ',';
    url += encoded(text);
  }
  return url;
}

}  // namespace

std::optional<URL> MailMessage::mailtoURL() const {
  std::string url = "mailto:" + joined(toRecipients);
  char separator = '?';
  const auto add = [&](const char* name, const std::string& encoded) {
    if (encoded.empty()) return;
    url += separator;
    url += name;
    url += '=' + encoded;
    separator = '&';
  };
  add("cc", joined(ccRecipients));
  add("bcc", joined(bccRecipients));
  add("subject", encoded(subject));
  add("body", encoded(body));
  return URL::parse(url);
}

void MailComposer::setToRecipients(const std::vector<std::string>& recipients) {
  message_.toRecipients = headerTexts(recipients);
}
void MailComposer::setCcRecipients(const std::vector<std::string>& recipients) {
  message_.ccRecipients = headerTexts(recipients);
}
void MailComposer::setBccRecipients(const std::vector<std::string>& recipients) {
  message_.bccRecipients = headerTexts(recipients);
}
void MailComposer::setSubject(const std::string& subject) {
  message_.subject = headerText(subject);
}
void MailComposer::setMessageBody(const std::string& body) {
  message_.body = repairedUTF8(body);
}

void MailComposer::present(ViewController& viewController) {
  if (presented_) return;
  presented_ = true;
  presenting_ = &viewController;
  MailService::shared().compose(message_, [self = shared_from_this()](MailResult result) {
    if (MailComposerDelegate* delegate = self->delegate_.get()) {
      delegate->mailComposerDidFinish(*self, result);
    }
  });
}

}  // namespace valdren::platform
