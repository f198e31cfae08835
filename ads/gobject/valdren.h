/*
 * Everything that a C application needs to show ads:
 *
 *     #include <valdren-gobject/valdren.h>
 *
 *     valdren_set_ad_network("https://ads.your.example");
 *     GtkWidget* banner = valdren_banner_new("your ad unit");
 *     gtk_box_append(GTK_BOX(box), banner);
 *     valdren_banner_load_request(VALDREN_BANNER(banner), NULL);
 */
#pragma once

#include "ads/gobject/ValdrenBanner.h"
#include "ads/gobject/ValdrenError.h"
#include "ads/gobject/ValdrenMacros.h"
#include "ads/gobject/ValdrenRequest.h"
#include "ads/gobject/ValdrenSetup.h"
