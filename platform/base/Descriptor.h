// A file descriptor that closes itself.
#pragma once

#include <unistd.h>

namespace valdren::platform {

class Descriptor {
 public:
  /// Takes ownership. A negative number means that no file is open.
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

 private:
  int number_;
};

}  // namespace valdren::platform
