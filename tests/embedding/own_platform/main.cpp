// An application whose own "platform" is not the client's.
#include <valdren/valdren.h>

#include <cstdio>

#include "platform/ui/View.h"

int main() {
  const platform::Window window;
  const valdren::platform::Rect frame{0, 0, 320, 50};
  std::printf("%d %g %s\n", window.ours, frame.width, valdren::libraryVersion());
}
