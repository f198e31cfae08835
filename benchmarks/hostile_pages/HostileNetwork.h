// An ad network whose second answer is an attack.
#pragma once

#include <libsoup/soup.h>

#include <atomic>
#include <string>
#include <thread>

#include "benchmarks/hostile_pages/Attacks.h"

namespace benchmarks {

/// Serves on a free loopback port, on its own thread.
class HostileNetwork {
 public:
  HostileNetwork();
  ~HostileNetwork();
  HostileNetwork(const HostileNetwork&) = delete;
  HostileNetwork& operator=(const HostileNetwork&) = delete;

  /// From now on the second request carries this attack; the others are normal.
  void begin(const Attack& attack);
  /// The number of requests that the ad engine script has built since then.
  int turn() const { return turn_; }
  /// The address of the script and the ads of the present attack; each attack has its own folder.
  std::string address() const;

 private:
  void serve();
  static void answer(SoupServer* server, SoupServerMessage* message, const char* path,
                     GHashTable* query, gpointer self);
  void answerTurn(SoupServerMessage* message);
  void answerAd(SoupServerMessage* message);

  std::atomic<const Attack*> attack_ = nullptr;
  std::atomic<int> turn_ = 0;
  std::atomic<int> number_ = 0;
  std::string base_;
  GMainContext* context_ = g_main_context_new();
  GMainLoop* loop_ = g_main_loop_new(context_, FALSE);
  SoupServer* server_ = nullptr;
  std::thread thread_;
};

}  // namespace benchmarks
