// The opener of every page that may open screens.
#pragma once

#include <memory>

#include "ads/web/VADOpener.h"

namespace valdren {

/// An opener that opens pages in the browser and in web app screens.
std::unique_ptr<VADOpener> openerWithScreens();

}  // namespace valdren
