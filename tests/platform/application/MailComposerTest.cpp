// Mails: which texts of a page reach the mail program, and in which field.
#include "platform/application/MailComposer.h"

#include <gtest/gtest.h>

namespace valdren::platform {
namespace {

TEST(MailMessage, SaysEverythingInOneEncodedURL) {
  const struct {
    MailMessage message;
    const char* url;
  } kCases[] = {
      {{}, "mailto:"},
      {{{"a@b"}, {}, {}, "", ""}, "mailto:a@b"},
      {{{"a@b"}, {"c@d", "e@f"}, {"g@h"}, "Hi & bye", "1\n2"},
       "mailto:a@b?cc=c@d,e@f&bcc=g@h&subject=Hi%20%26%20bye&body=1%0A2"},
      {{{"a@b?bcc=x@y"}, {}, {}, "s#f", ""}, "mailto:a@b%3Fbcc%3Dx@y?subject=s%23f"},
      {{{"--attach=/etc/passwd"}, {}, {}, "$(reboot) `x` 'y' \"z\"", ""},
       "mailto:--attach%3D%2Fetc%2Fpasswd?subject=%24%28reboot%29%20%60x%60%20%27y%27%20%22z%22"},
      {{{}, {}, {}, "é", ""}, "mailto:?subject=%C3%A9"},
  };
  for (const auto& each : kCases) {
    const auto url = each.message.mailtoURL();
    ASSERT_TRUE(url) << each.url;
    EXPECT_EQ(url->absoluteString(), each.url);
  }
  EXPECT_FALSE((MailMessage{{}, {}, {}, "", std::string(3 << 20, 'x')}.mailtoURL()));
}

TEST(MailComposer, NoTextOfAPageBeginsAHeaderOfItsOwn) {
  const auto composer = std::make_shared<MailComposer>();
  composer->setToRecipients({"a@b\r\nBcc: x@y", " ", ""});
  composer->setCcRecipients({"", "c@d "});
  composer->setSubject("Hi\nX-Spam: no\x7f");
  composer->setMessageBody("one\ntwo");
  EXPECT_EQ(composer->message().toRecipients, std::vector<std::string>{"a@b  Bcc: x@y"});
  EXPECT_EQ(composer->message().ccRecipients, std::vector<std::string>{"c@d"});
  EXPECT_EQ(composer->message().subject, "Hi X-Spam: no");
  EXPECT_EQ(composer->message().body, "one\ntwo");
}

}  // namespace
}  // namespace valdren::platform
