// The desktop's portal, played by a service of the test's own.
#include <gtest/gtest.h>
#include <gtkmm/settings.h>
#include <gtkmm/window.h>

#include <filesystem>

#include "platform/application/Appearance.h"
#include "platform/application/Application.h"
#include "platform/application/MailComposer.h"
#include "platform/ui/LaunchPermit.h"
#include "tests/support/BusService.h"
#include "tests/support/Loop.h"
#include "tests/support/Process.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterfaces =
    "<node><interface name='org.freedesktop.portal.Settings'><method name='Read'>"
    "<arg direction='in' type='s'/><arg direction='in' type='s'/>"
    "<arg direction='out' type='v'/></method></interface>"
    "<interface name='org.freedesktop.portal.Email'><method name='ComposeEmail'>"
    "<arg direction='in' type='s'/><arg direction='in' type='a{sv}'/>"
    "<arg direction='out' type='o'/></method></interface></node>";

class PortalTest : public ::testing::Test {
 protected:
  bool appear() { return portal_.appear("org.freedesktop.portal.Desktop", kPath, kInterfaces); }

  GVariant* answer(const std::string& method, GVariant* parameters) {
    if (method == "Read")
      return g_variant_new("(v)", g_variant_new_variant(g_variant_new_uint32(1)));
    GVariant* const options = g_variant_get_child_value(parameters, 1);
    char* const text = g_variant_print(options, FALSE);
    mail_ = text;
    g_free(text);
    const char* token = "";
    g_variant_lookup(options, "handle_token", "&s", &token);
    std::string sender = portal_.caller().substr(1);
    std::replace(sender.begin(), sender.end(), '.', '_');
    request_ = std::string(kPath) + "/request/" + sender + "/" + token;
    g_variant_unref(options);
    return g_variant_new("(o)", request_.c_str());
  }

  std::string mail_;     // the options of the last one
  std::string request_;  // its path
  BusService portal_{[this](const std::string& method, GVariant* parameters) {
    return answer(method, parameters);
  }};
};

TEST_F(PortalTest, AppearanceIsReadAndFollowed) {
  ASSERT_TRUE(appear());
  const auto settings = Gtk::Settings::get_default();
  Gtk::Window window;
  markHighContrast(window);
  followAppearance("/none");
  const auto isDark = [&] { return bool(settings->property_gtk_application_prefer_dark_theme()); };
  const auto isMarked = [&] { return window.has_css_class("high-contrast"); };
  EXPECT_TRUE(runUntil([&] { return isDark() && isMarked(); }));
  for (const char* key : {"color-scheme", "contrast"}) {
    portal_.emit(
        kPath, "org.freedesktop.portal.Settings", "SettingChanged",
        g_variant_new("(ssv)", "org.freedesktop.appearance", key, g_variant_new_uint32(0)));
  }
  EXPECT_TRUE(runUntil([&] { return !isDark() && !isMarked(); }));
}

TEST_F(PortalTest, AMailIsWrittenByThePortalOrElseByTheDefaultHandler) {
  const TemporaryFolder folder;
  const std::string noted = folder.file("noted");
  GAppInfo* const mailer =
      g_app_info_create_from_commandline(("sh -c 'echo $0 > " + noted + "'").c_str(), "Mailer",
                                         G_APP_INFO_CREATE_SUPPORTS_URIS, nullptr);
  g_app_info_set_as_default_for_type(mailer, "x-scheme-handler/mailto", nullptr);
  g_object_unref(mailer);
  ASSERT_TRUE(runUntil([] { return Application::shared().canOpenURL(*URL::parse("mailto:")); }));
  const std::optional<MailResult> none;
  std::optional<MailResult> result;
  const auto compose = [&] {
    result.reset();
    LaunchPermit::shared().touched();
    MailService::standard().compose({{"a@b"}, {"c@d"}, {"e@f"}, "Hi", "text"},
                                    [&](MailResult told) { result = told; });
  };
  const auto isGivenToTheHandler = [&] {
    const bool given = runUntil([&] {
      return result && readFile(noted) == "mailto:a@b?cc=c@d&bcc=e@f&subject=Hi&body=text\n";
    });
    std::filesystem::remove(noted);
    return given;
  };
  compose();
  EXPECT_TRUE(isGivenToTheHandler()) << "without a portal";
  ASSERT_TRUE(appear());
  const std::pair<unsigned, std::optional<MailResult>> rows[] = {
      {0, MailResult::Done}, {1, MailResult::Cancelled}, {2, MailResult::Done}};
  for (const auto& [response, expected] : rows) {
    mail_.clear();
    compose();
    ASSERT_TRUE(runUntil([&] { return !mail_.empty(); }));
    for (const char* part : {"a@b", "['c@d']", "['e@f']", "'Hi'", "'text'"}) {
      EXPECT_NE(mail_.find(part), std::string::npos) << mail_;
    }
    EXPECT_EQ(result, none) << "before the portal has answered";
    portal_.emit(request_, "org.freedesktop.portal.Request", "Response",
                 g_variant_new("(ua{sv})", response, nullptr));
    EXPECT_TRUE(runUntil([&] { return result.has_value(); }));
    EXPECT_EQ(result, expected) << response;
    EXPECT_EQ(response == 2 && isGivenToTheHandler(), response == 2);
  }
  EXPECT_FALSE(std::filesystem::exists(noted)) << "written twice";
  result.reset();
  MailService::standard().compose({}, [&](MailResult told) { result = told; });
  EXPECT_EQ(result, none);
  EXPECT_TRUE(runUntil([&] { return result == MailResult::Failed; })) << "nobody asked for it";
}

}  // namespace
}  // namespace valdren::platform
