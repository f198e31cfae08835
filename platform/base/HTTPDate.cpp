#include "platform/base/HTTPDate.h"

#include <libsoup/soup.h>

#include <cmath>
#include <memory>

namespace valdren::platform {
namespace {

struct Free {
  void operator()(GDateTime* date) const { g_date_time_unref(date); }
  void operator()(char* text) const { g_free(text); }
};

}  // namespace

std::string httpDateText(Date date) {
  const double seconds = std::floor(date.secondsSince1970());
  if (!(std::abs(seconds) < 1e12)) return "";
  const std::unique_ptr<GDateTime, Free> instant(
      g_date_time_new_from_unix_utc(static_cast<gint64>(seconds)));
  if (!instant) return "";
  const std::unique_ptr<char, Free> text(soup_date_time_to_string(instant.get(), SOUP_DATE_HTTP));
  return text.get();
}

std::optional<Date> dateFromHTTPText(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const std::unique_ptr<GDateTime, Free> date(soup_date_time_new_from_http_string(text.c_str()));
  if (!date) return std::nullopt;
  return Date(static_cast<double>(g_date_time_to_unix(date.get())));
}

}  // namespace valdren::platform
