#include "platform/web/PageScripts.h"

#include <cmath>
#include <optional>
#include <string>

#include "platform/web/PingFilter.h"

extern "C" GResource* platform_scripts_get_resource(void);

namespace valdren::platform {
namespace {

constexpr const char* kWorld = "platform";
constexpr const char* kChannel = "pageWidth";
constexpr double kWidest = 20000;

/// A script of this folder's scripts/.
std::string scriptNamed(const char* name) {
  const auto path = std::string("/com/valdren/platform/scripts/") + name;
  const GBytesPtr bytes(g_resource_lookup_data(platform_scripts_get_resource(), path.c_str(),
                                               G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
  gsize length = 0;
  const auto* const text = static_cast<const char*>(g_bytes_get_data(bytes.get(), &length));
  return {text, length};
}

std::optional<double> numberAt(JSCValue* array, guint index) {
  const GObjectPtr<JSCValue> value(jsc_value_object_get_property_at_index(array, index));
  if (!value || !jsc_value_is_number(value.get())) return std::nullopt;
  const double number = jsc_value_to_double(value.get());
  if (!std::isfinite(number) || number < 0 || number > kWidest) return std::nullopt;
  return number;
}

}  // namespace

PageScripts::PageScripts() : manager_(webkit_user_content_manager_new()) {
  g_signal_connect(manager_.get(), "script-message-received::pageWidth",
                   G_CALLBACK(messageReceived), this);
  webkit_user_content_manager_register_script_message_handler(manager_.get(), kChannel, kWorld);
  refusePings(manager_.get());
}

PageScripts::~PageScripts() {
  g_signal_handlers_disconnect_by_data(manager_.get(), this);
}

void PageScripts::select(unsigned detectors, bool measures) {
  if (detectors == detectors_ && measures == measures_) return;
  detectors_ = detectors;
  measures_ = measures;
  webkit_user_content_manager_remove_all_scripts(manager_.get());
  if (detectors != 0) add("detector.js");
  if (measures) add("measure.js");
}

void PageScripts::setWidthHandler(std::function<void(double, double)> handler) {
  widthHandler_ = std::move(handler);
}

void PageScripts::messageReceived(WebKitUserContentManager*, JSCValue* value, gpointer self) {
  const auto& handler = static_cast<PageScripts*>(self)->widthHandler_;
  if (!handler || !jsc_value_is_array(value)) return;
  const auto viewport = numberAt(value, 0);
  const auto width = numberAt(value, 1);
  if (viewport && width) handler(*viewport, *width);
}

void PageScripts::add(const char* name) {
  const std::string source = scriptNamed(name);
  WebKitUserScript* const script = webkit_user_script_new_for_world(
      source.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
      WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END, kWorld, nullptr, nullptr);
  webkit_user_content_manager_add_script(manager_.get(), script);
  webkit_user_script_unref(script);
}

}  // namespace valdren::platform
