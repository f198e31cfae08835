#include "platform/base/Log.h"

#include <glib.h>

#include <string>

#include "platform/base/Crypto.h"

namespace valdren::platform {
namespace {

constexpr const char* kDomain = "Valdren";
constexpr std::size_t kLongestLine = 4096;

std::string printable(std::string_view line) {
  const bool cut = line.size() > kLongestLine;
  std::string text;
  for (const char character : line.substr(0, kLongestLine)) {
    const auto code = static_cast<unsigned char>(character);
    if (character == '\n') {
      text += "\\n";
    } else if (code < 0x20 && character != '\t') {
      text += "\\x" + hexadecimal({&code, 1});
    } else {
      text += character;
    }
  }
  if (cut) text += " ...";
  return text;
}

void write(GLogLevelFlags level, std::string_view line) {
  g_log(kDomain, level, "%s", printable(line).c_str());
}

}  // namespace

void log(std::string_view line) {
  write(G_LOG_LEVEL_MESSAGE, line);
}
void logWarning(std::string_view line) {
  write(G_LOG_LEVEL_WARNING, line);
}
void logDebug(std::string_view line) {
  write(G_LOG_LEVEL_DEBUG, line);
}

}  // namespace valdren::platform
