// Named like one of the client's headers, and with the same class in it.
#pragma once

namespace platform {

struct Window {
  int ours = 42;
};

}  // namespace platform
