// What must hold before anything of the C interface that needs the toolkit.
#pragma once

/// Whether the call comes too early, or on another thread than the main one; then it has been told
/// in one log line, and the caller does nothing.
bool isRefused(const char* function);
