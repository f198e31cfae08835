#include <libsoup/soup.h>

#include <memory>

#include "sandbox/Http.h"

namespace sandbox {
namespace {

struct FreeDate {
  void operator()(GDateTime* date) const { g_date_time_unref(date); }
};
using DateHandle = std::unique_ptr<GDateTime, FreeDate>;

struct FreeText {
  void operator()(char* text) const { g_free(text); }
};

}  // namespace

std::string httpDate(double secondsSince1970) {
  const DateHandle date(g_date_time_new_from_unix_utc(static_cast<gint64>(secondsSince1970)));
  const std::unique_ptr<char, FreeText> text(soup_date_time_to_string(date.get(), SOUP_DATE_HTTP));
  return text.get();
}

std::optional<double> secondsFromHttpDate(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const DateHandle date(soup_date_time_new_from_http_string(text.c_str()));
  if (!date) return std::nullopt;
  return static_cast<double>(g_date_time_to_unix(date.get()));
}

}  // namespace sandbox
