#include "sandbox/Landing.h"

#include "platform/Text.h"

namespace sandbox {

Answer landingAnswer(const Request& request, const Placement& placement) {
  const std::string& path = request.path;
  const std::string name = decoded(path.substr(path.rfind('/') + 1));
  if (name == "plain") return {.body = htmlOf("land-plain.html", placement)};
  return {.status = 404, .contentType = "text/plain; charset=utf-8", .body = "No such page.\n"};
}

}  // namespace sandbox
