#include "ads/valdren.h"

namespace valdren {

const char* libraryVersion() {
  return VALDREN_VERSION;
}

}  // namespace valdren
