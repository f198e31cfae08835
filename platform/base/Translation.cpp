#include "platform/base/Translation.h"

#include <glib.h>
#include <libintl.h>

#include <clocale>
#include <filesystem>

namespace valdren::platform {

void setTranslations(const std::string& domain) {
  std::setlocale(LC_ALL, "");
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const auto beside = program / "locale";
  const auto installed = program.parent_path() / "share" / "locale";
  const bool isBeside = std::filesystem::is_directory(beside, error);
  bindtextdomain(domain.c_str(), (isBeside ? beside : installed).c_str());
  bind_textdomain_codeset(domain.c_str(), "UTF-8");
  textdomain(domain.c_str());
}

std::string translated(const std::string& text) {
  return g_dgettext(nullptr, text.c_str());
}

}  // namespace valdren::platform
