#include "tests/support/FetchRecorder.h"

#include "tests/support/Loop.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

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

void FetchRecorder::connectionDidReceiveResponse(platform::URLConnection&,
                                                 const platform::URLResponse& received) {
  response = received;
  note("response");
}

void FetchRecorder::connectionDidReceiveData(platform::URLConnection&, std::string_view data) {
  bodySize += data.size();
  if (keepsBody) body += data;
  note("data");
}

void FetchRecorder::connectionDidFinishLoading(platform::URLConnection&) {
  finished = true;
  note("finish");
}

void FetchRecorder::connectionDidFail(platform::URLConnection&, const platform::Error& failure) {
  error = failure;
  note("fail");
}

}  // namespace quorbel_tests
