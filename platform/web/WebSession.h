// Shared by all web views of the process: one context and one session without persistent data.
#pragma once

#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {

/// Limits the memory of web processes. Exists until the process ends.
WebKitWebContext* webContext();

/// Cookies, caches and storage are in memory only; downloads and unverified TLS are refused. A
/// network process over its memory limit is ended, and the engine starts a new one.
WebKitNetworkSession* webSession();

/// In the next turn, ends the web processes that the engine keeps after their last view is gone.
void endKeptProcesses();

}  // namespace valdren::platform
