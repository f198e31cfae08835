#include "tests/support/LogLines.h"

#include <glib.h>

#include <utility>

namespace quorbel_tests {

constexpr const char* kDomain = "Valdren";

LogLines::LogLines() {
  const auto keep = [](const char*, GLogLevelFlags, const char* line, gpointer self) {
    const std::lock_guard lock(static_cast<LogLines*>(self)->mutex_);
    static_cast<LogLines*>(self)->lines_.emplace_back(line);
  };
  handler_ = g_log_set_handler(kDomain, GLogLevelFlags(G_LOG_LEVEL_MESSAGE | G_LOG_LEVEL_WARNING),
                               keep, this);
}

LogLines::~LogLines() {
  g_log_remove_handler(kDomain, handler_);
}

std::vector<std::string> LogLines::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

std::vector<std::string> LogLines::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(lines_, {});
}

}  // namespace quorbel_tests
