// Everything that an application needs to show ads:
//
//     #include <valdren/valdren.h>
//
//     auto banner = std::make_shared<valdren::VADBannerView>(
//         valdren::platform::Rect{0, 0, 320, 50});
//     banner->setAdUnitID("your ad unit");
//     banner->setRootViewController(valdren::platform::hostScreen(GTK_WINDOW(window)));
//     gtk_box_append(GTK_BOX(box), valdren::platform::hostWidget(banner));
//     banner->loadRequest(valdren::VADRequest::request());
#pragma once

#include "ads/api/VADBannerView.h"
#include "ads/api/VADBannerViewDelegate.h"
#include "ads/request/VADConfiguration.h"
#include "ads/request/VADRequest.h"
#include "ads/request/VADRequestError.h"
#include "platform/application/Host.h"
#include "platform/storage/Bundle.h"

namespace valdren {

/// The library's own version, as "1.0.0"; a static text.
VALDREN_EXPORT const char* libraryVersion();

}  // namespace valdren
