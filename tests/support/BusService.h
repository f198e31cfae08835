// A service of a test's own on the session's message bus, in place of one of the desktop's.
#pragma once

#include <gio/gio.h>

#include <functional>
#include <string>

#include "platform/base/GObjectPtr.h"

namespace quorbel_tests {

/// Has a connection of its own, besides the one that the code under test uses. Is of version 3.
class BusService {
 public:
  /// Answers a method with a tuple; null is an error for the caller.
  using Answer = std::function<GVariant*(const std::string& method, GVariant* parameters)>;

  explicit BusService(Answer answer) : answer_(std::move(answer)) {}
  ~BusService();
  BusService(const BusService&) = delete;
  BusService& operator=(const BusService&) = delete;

  /// Connects, offers the methods of this description at the path, and waits until the name is its
  /// own; false when there is no bus.
  bool appear(const char* name, const char* path, const char* interfaces);
  /// Sends it to the last caller.
  void emit(const std::string& path, const char* interface, const char* signal, GVariant* content);
  /// The bus name of the last caller.
  const std::string& caller() const { return caller_; }

 private:
  void makeKnown(const std::string& name);
  void reloadBus();

  Answer answer_;
  std::string caller_;
  valdren::platform::GObjectPtr<GDBusConnection> connection_;
  guint name_ = 0;
  std::string description_;  // the path of its file
};

}  // namespace quorbel_tests
