#include "ads/gobject/ValdrenSetup.h"

#include "ads/gobject/ValdrenMacros.h"
#include "ads/request/VADConfiguration.h"
#include "platform/storage/Bundle.h"

gboolean valdren_set_ad_network(const char* url) {
  return valdren::VADConfiguration::setAdNetwork(url ? url : "");
}

void valdren_set_application(const char* identifier, const char* name, const char* version) {
  g_return_if_fail(identifier && *identifier);
  auto& bundle = valdren::platform::Bundle::main();
  bundle.setIdentifier(identifier);
  if (version) bundle.setVersion(version);
  if (name) g_set_application_name(name);
}
