/* Which application this is, and where its ads come from. */
#pragma once

#include <glib.h>

#include "ads/gobject/ValdrenMacros.h"

G_BEGIN_DECLS

/**
 * valdren_set_ad_network:
 * @url: the base address of the ad network, as "https://ads.your.example"
 *
 * Says where ads, the ad engine script and the ad network's own pings are. Call it before the first
 * request.
 *
 * Returns: whether that is an address; if not, nothing has changed, and the log says so
 */
VALDREN_API gboolean valdren_set_ad_network(const char* url);

/**
 * valdren_set_application:
 * @identifier: in reverse-domain form, as "com.your.application"
 * @name: (nullable): as people read it
 * @version: (nullable): as people read it
 *
 * Says which application this is. State and identity are kept apart by the identifier; without this
 * call it is that of the `GApplication`. Call it before the first banner.
 */
VALDREN_API void valdren_set_application(const char* identifier, const char* name,
                                         const char* version);

G_END_DECLS
