#include "tests/support/FetchRecorder.h"

#include "tests/support/Loop.h"

namespace quorbel_tests {

bool FetchRecorder::start(const platform::URLRequest& request) {
  connection = platform::URLLoading::shared().makeConnection(request, this);
  if (connection) connection->start();
  return connection != nullptr;
}

bool FetchRecorder::fetch(const platform::URLRequest& request) {
  return start(request) && runUntil([this] { return isOver(); }, 30);
}

void FetchRecorder::note(const std::string& event) {
  if (event != "data" || events.empty() || events.back() != "data") events.push_back(event);
  if (onEvent) onEvent(event);
}

void FetchRecorder::connectionWillSendRequest(platform::URLConnection&,
                                              const platform::URLRequest& request,
                                              const platform::URLResponse* redirectResponse) {
  urls.push_back(request.url.absoluteString());
  if (redirectResponse) redirects.push_back(*redirectResponse);
  note(redirectResponse ? "redirect" : "send");
}

void FetchRecorder::connectionDidReceiveData(platform::URLConnection&, std::string_view data) {
  bodySize += data.size();
  if (keepsBody) body += data;
  note("data");
}

}  // namespace quorbel_tests
