#include "sandbox/Pages.h"

#include <gio/gio.h>

#include <algorithm>

#include "platform/base/GObjectPtr.h"

extern "C" GResource* sandbox_pages_get_resource(void);

namespace platform = valdren::platform;

namespace sandbox {

std::string page(std::string_view name) {
  const std::string path = "/com/valdren/sandbox/" + std::string(name);
  const platform::GBytesPtr bytes(g_resource_lookup_data(sandbox_pages_get_resource(), path.c_str(),
                                                         G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
  if (!bytes) return {};
  gsize size = 0;
  const auto* data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
  return data ? std::string(data, size) : std::string();
}

std::string filled(std::string_view text,
                   std::initializer_list<std::pair<std::string_view, std::string_view>> values) {
  std::string result;
  while (!text.empty()) {
    const std::size_t open = std::min(text.find("{{"), text.size());
    result += text.substr(0, open);
    text.remove_prefix(open);
    const std::size_t close = text.find("}}");
    if (close == std::string_view::npos) return result.append(text);
    const std::string_view key = text.substr(2, close - 2);
    const auto* value = std::find_if(values.begin(), values.end(),
                                     [key](const auto& entry) { return entry.first == key; });
    if (value == values.end()) {
      // Skips only "{{", because another "{{" may come before this "}}".
      result += text.substr(0, 2);
      text.remove_prefix(2);
    } else {
      result += value->second;
      text.remove_prefix(close + 2);
    }
  }
  return result;
}

}  // namespace sandbox
