#include "tests/support/LogLines.h"

#include <glib.h>

#include <utility>

namespace quorbel_tests {
namespace {

constexpr const char* kDomain = "Valdren";

void keep(const char*, GLogLevelFlags, const char* line, gpointer lines) {
  static_cast<std::vector<std::string>*>(lines)->emplace_back(line);
}

}  // namespace

LogLines::LogLines()
    : handler_(g_log_set_handler(kDomain, GLogLevelFlags(G_LOG_LEVEL_MESSAGE | G_LOG_LEVEL_WARNING),
                                 keep, &lines_)) {}

LogLines::~LogLines() {
  g_log_remove_handler(kDomain, handler_);
}

std::vector<std::string> LogLines::take() {
  return std::exchange(lines_, {});
}

}  // namespace quorbel_tests
