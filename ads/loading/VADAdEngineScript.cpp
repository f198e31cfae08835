#include "ads/loading/VADAdEngineScript.h"

#include "ads/protocol/Script.h"
#include "ads/request/VADConfiguration.h"
#include "platform/base/MainThread.h"

namespace valdren {
VADAdEngineScript::~VADAdEngineScript() {
  if (file_) file_->setDelegate(nullptr);
}

platform::URL VADAdEngineScript::jsBuildAdURL() {
  const platform::URL& host = VADConfiguration::scriptHostBaseURL();
  std::string address = host.absoluteString();
  if (address.ends_with('/')) address.pop_back();
  return platform::URL::parse(address + kVADScriptPath).value_or(host);
}

bool VADAdEngineScript::open(platform::WeakPtr<VADCachedFileDelegate> delegate) {
  platform::assertMainThread();
  if (file_) return false;
  file_ = VADCachedFile::initWithDelegate(delegate, jsBuildAdURL());
  return true;
}

bool VADAdEngineScript::isFresh() {
  return freshness_.isFresh() && !content().empty();
}

void VADAdEngineScript::validate() {
  platform::assertMainThread();
  freshness_.asked();
  file_->validate();
}

}  // namespace valdren
