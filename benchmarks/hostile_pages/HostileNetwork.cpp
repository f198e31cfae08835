#include "benchmarks/hostile_pages/HostileNetwork.h"

#include <future>
#include <string_view>

#include "ads/protocol/Headers.h"

namespace benchmarks {
namespace {

constexpr int kTurnOfTheAttack = 2;
constexpr const char* kHonestAd = "<!DOCTYPE html><p>An honest ad";
/// The time that an attack has before the refresh.
constexpr const char* kSecondsAfterAttack = "20";
constexpr const char* kSecondsOtherwise = "2";

/// Asks the network at each turn what the script should do.
constexpr const char* kScript =
    "function URVO_buildAdURL() { const turn = new XMLHttpRequest;"
    " turn.open('GET', '@/turn', false); turn.send(); eval(turn.responseText) }";
constexpr const char* kHonestTurn =
    "location.href = 'gmsg://x/loadAdURL?url=' + encodeURIComponent('@/ad')";

std::string withAddress(std::string text, const std::string& address) {
  return text.replace(text.find('@'), 1, address);
}

void send(SoupServerMessage* message, const char* type, const std::string& body) {
  soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
  soup_server_message_set_response(message, type, SOUP_MEMORY_COPY, body.data(), body.size());
}

}  // namespace

HostileNetwork::HostileNetwork() {
  std::promise<void> listens;
  thread_ = std::thread([this, &listens] {
    g_main_context_push_thread_default(context_);
    serve();
    listens.set_value();
    g_main_loop_run(loop_);
    g_object_unref(server_);
    g_main_context_pop_thread_default(context_);
  });
  listens.get_future().wait();
}

HostileNetwork::~HostileNetwork() {
  g_main_loop_quit(loop_);
  thread_.join();
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

void HostileNetwork::begin(const Attack& attack) {
  attack_ = &attack;
  turn_ = 0;
  ++number_;
}

std::string HostileNetwork::address() const {
  return base_ + "/" + std::to_string(number_);
}

void HostileNetwork::serve() {
  server_ = soup_server_new(nullptr, nullptr);
  soup_server_add_handler(server_, nullptr, answer, this, nullptr);
  soup_server_listen_local(server_, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr);
  GSList* const addresses = soup_server_get_uris(server_);
  char* const text = g_uri_to_string(static_cast<GUri*>(addresses->data));
  base_ = text;
  while (base_.ends_with('/')) base_.pop_back();
  g_free(text);
  g_slist_free_full(addresses, reinterpret_cast<GDestroyNotify>(g_uri_unref));
}

void HostileNetwork::answer(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*,
                            gpointer self) {
  auto& network = *static_cast<HostileNetwork*>(self);
  const std::string_view asked(path);
  if (asked.ends_with(".js")) {
    send(message, "text/javascript", withAddress(kScript, network.address()));
  } else if (asked.ends_with("/turn")) {
    network.answerTurn(message);
  } else if (asked.ends_with("/ad")) {
    network.answerAd(message);
  } else if (asked.ends_with("/silent")) {
    soup_server_message_pause(message);
  } else {
    soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);
  }
}

void HostileNetwork::answerTurn(SoupServerMessage* message) {
  const Attack& attack = *attack_;
  const bool attacks = ++turn_ == kTurnOfTheAttack && attack.place == Attack::Place::Script;
  send(message, "text/javascript", attacks ? attack.text : withAddress(kHonestTurn, address()));
}

void HostileNetwork::answerAd(SoupServerMessage* message) {
  const Attack& attack = *attack_;
  const bool attacks = turn_ == kTurnOfTheAttack && attack.place == Attack::Place::Ad;
  soup_message_headers_replace(soup_server_message_get_response_headers(message),
                               valdren::kVADHeaderRefreshRate,
                               attacks ? kSecondsAfterAttack : kSecondsOtherwise);
  send(message, "text/html", attacks ? attack.text : kHonestAd);
}

}  // namespace benchmarks
