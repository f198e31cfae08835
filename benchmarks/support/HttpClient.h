// A plain HTTP client that waits for its answer.
#pragma once

#include <string>

namespace benchmarks {

/// The body; empty without a complete answer.
std::string get(const std::string& url);
/// The same for a request without a body.
std::string post(const std::string& url);

}  // namespace benchmarks
