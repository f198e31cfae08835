// How platform services are found, and replaced in tests.
#pragma once

namespace valdren::platform {

/// Gives `Service` a current instance. `Service` declares `static Service& standard();`, which
/// returns the real component, made on first use.
template <class Service>
class Shared {
 public:
  /// The instance in force: the replacement if there is one, else the real component.
  static Service& shared() { return replacement_ ? *replacement_ : Service::standard(); }

  /// Puts an instance in place of the real component until it goes out of scope. Nests.
  class Replacement {
   public:
    explicit Replacement(Service& instance) : previous_(replacement_) { replacement_ = &instance; }
    ~Replacement() { replacement_ = previous_; }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

   private:
    Service* previous_;
  };

 private:
  static inline Service* replacement_ = nullptr;
};

}  // namespace valdren::platform
