/* The ad banner as a widget. */
#pragma once

#include <gtk/gtk.h>

#include "ads/gobject/ValdrenError.h"
#include "ads/gobject/ValdrenRequest.h"

G_BEGIN_DECLS

/**
 * ValdrenBanner:
 *
 * Shows an ad of 320 x 50 points, refreshed as the ad server says. Pages that an ad opens come up
 * over the window in which the banner stands. Main thread only, after GTK has been initialised; it
 * may be removed in any of its signals.
 */
/**
 * ValdrenBanner:ad-unit-id:
 *
 * Which ads to show; empty at first.
 */
/**
 * ValdrenBanner:request:
 *
 * What the next [method@Valdren.Banner.load_request] asks for; %NULL for default values.
 */
/**
 * ValdrenBanner:has-ad: (getter has_ad)
 *
 * Whether an ad is shown.
 */
/**
 * ValdrenBanner::ad-received:
 * @self: the banner
 *
 * An ad is shown.
 */
/**
 * ValdrenBanner::ad-failed:
 * @self: the banner
 * @error: why, in the domain %VALDREN_ERROR
 *
 * The request failed; the banner keeps what it shows.
 */
/**
 * ValdrenBanner::will-present-screen:
 * @self: the banner
 *
 * A page is about to cover the window.
 */
/**
 * ValdrenBanner::will-dismiss-screen:
 * @self: the banner
 *
 * The page is about to go.
 */
/**
 * ValdrenBanner::did-dismiss-screen:
 * @self: the banner
 *
 * The page is gone.
 */
/**
 * ValdrenBanner::will-leave-application:
 * @self: the banner
 *
 * Another application is about to be opened.
 */
#define VALDREN_TYPE_BANNER (valdren_banner_get_type())
VALDREN_API G_DECLARE_FINAL_TYPE(ValdrenBanner, valdren_banner, VALDREN, BANNER, GtkWidget)

/**
 * valdren_banner_new:
 * @ad_unit_id: (nullable): which ads to show
 *
 * Returns: (transfer floating): a banner without an ad
 */
VALDREN_API GtkWidget* valdren_banner_new(const char* ad_unit_id);

/**
 * valdren_banner_load_request:
 * @self: a banner in a window
 * @request: (nullable): what to ask for; %NULL for [property@Valdren.Banner:request]
 *
 * Asks for an ad. In no window this fails with code 0. While a request is under way, and in the
 * background, nothing happens.
 */
VALDREN_API void valdren_banner_load_request(ValdrenBanner* self, ValdrenRequest* request);

/**
 * valdren_banner_get_ad_unit_id:
 * @self: a banner
 *
 * Returns: (transfer full): which ads to show
 */
VALDREN_API char* valdren_banner_get_ad_unit_id(ValdrenBanner* self);

/**
 * valdren_banner_set_ad_unit_id:
 * @self: a banner
 * @ad_unit_id: (nullable): which ads to show
 */
VALDREN_API void valdren_banner_set_ad_unit_id(ValdrenBanner* self, const char* ad_unit_id);

/**
 * valdren_banner_get_request:
 * @self: a banner
 *
 * Returns: (transfer none) (nullable): what the next load asks for
 */
VALDREN_API ValdrenRequest* valdren_banner_get_request(ValdrenBanner* self);

/**
 * valdren_banner_set_request:
 * @self: a banner
 * @request: (nullable): what the next load asks for
 */
VALDREN_API void valdren_banner_set_request(ValdrenBanner* self, ValdrenRequest* request);

/**
 * valdren_banner_has_ad: (get-property has-ad)
 * @self: a banner
 *
 * Returns: whether an ad is shown
 */
VALDREN_API gboolean valdren_banner_has_ad(ValdrenBanner* self);

G_END_DECLS
