#include "platform/device/LinuxDevice.h"

#include <glib.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>

#include "platform/base/Crypto.h"
#include "platform/base/Text.h"
#include "platform/base/Value.h"
#include "platform/device/Monitor.h"
#include "platform/storage/AtomicFile.h"
#include "platform/storage/Bundle.h"
#include "platform/storage/Folders.h"
#include "platform/storage/RegularFile.h"

namespace valdren::platform {
namespace {

constexpr std::size_t kLongestModel = 100;
constexpr std::size_t kLongestFile = 64 * 1024;

/// Lower numbers are those of distributions that number only their base files. The kernel's number
/// says more about the system then.
constexpr int kLowestVersion = 3;

/// A monitor whose shorter side is below this, in points, belongs to a phone.
constexpr double kTabletFrom = 600;

std::string contentOf(const std::string& path) {
  return readRegularFile(path, kLongestFile).valueOr("");
}

/// A firmware's text without control characters, as one line.
std::string lineFrom(const std::string& content) {
  std::string line = repairedUTF8(content);
  std::erase_if(line, [](char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
  });
  line = trimmed(line);
  while (line.size() > kLongestModel) line.pop_back();
  return repairedUTF8(line);
}

bool isDottedNumbers(std::string_view text) {
  return !text.empty() && std::isdigit(static_cast<unsigned char>(text.front())) &&
         text.find_first_not_of("0123456789.") == std::string_view::npos;
}

/// Empty when the system names none, or one that is not its own.
std::string versionOfDistribution() {
  const std::unique_ptr<char, decltype(&g_free)> text(g_get_os_info(G_OS_INFO_KEY_VERSION_ID),
                                                      g_free);
  const std::string version = text ? text.get() : "";
  const bool isSystems =
      isDottedNumbers(version) && Value(version).integerValue() >= kLowestVersion;
  return isSystems ? version : "";
}

std::string leadingVersion(const std::string& release) {
  const std::string version = release.substr(0, release.find_first_not_of("0123456789."));
  return version.substr(0, version.find_last_not_of('.') + 1);
}

utsname systemNames() {
  utsname names{};
  uname(&names);
  return names;
}

/// For machines without an id: a random one, made once and stored; for this process only if it
/// cannot be stored.
std::string keptIdentifier() {
  static const std::string madeUp = hexadecimal(sha256(encryptAES128GCM("", {}).value_or("")));
  const auto folder = stateFolder();
  if (!folder) return madeUp;
  const std::string path = *folder + "/installation-id";
  std::string kept = lineFrom(contentOf(path));
  if (!kept.empty()) return kept;
  // Not synced: losing the id in a power cut only makes a new one.
  static_cast<void>(writeFileAtomically(path, madeUp, Sync::No));
  return madeUp;
}

bool isASCIILetterDigitOrDash(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '-';
}

/// Empty when the locale names no language.
std::string languageFrom(std::string_view locale) {
  std::string language(locale.substr(0, locale.find_first_of(".@")));
  if (language == "C" || language == "POSIX") return "";
  std::replace(language.begin(), language.end(), '_', '-');
  const bool isTag = std::all_of(language.begin(), language.end(), isASCIILetterDigitOrDash);
  return isTag ? language : "";
}

}  // namespace

LinuxDevice& LinuxDevice::instance() {
  static LinuxDevice device;
  return device;
}

Device& Device::standard() {
  return LinuxDevice::instance();
}

std::string LinuxDevice::model() const {
  for (const char* path : {"/proc/device-tree/model", "/sys/class/dmi/id/product_name"}) {
    if (std::string model = lineFrom(contentOf(root_ + path)); !model.empty()) return model;
  }
  return "Linux";
}

std::string LinuxDevice::systemVersion() const {
  const std::string version = versionOfDistribution();
  return version.empty() ? leadingVersion(systemNames().release) : version;
}

std::string LinuxDevice::machineIdentifier() const {
  for (const char* path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
    std::string identifier = lineFrom(contentOf(root_ + path));
    if (!identifier.empty() && identifier != "uninitialized") return identifier;
  }
  return keptIdentifier();
}

std::string LinuxDevice::uniqueIdentifier() const {
  // Hashed together with the application and the user. The result reveals none of them and differs
  // between applications.
  return hexadecimal(sha256("device\n" + Bundle::main().identifier() + "\n" +
                            std::to_string(getuid()) + "\n" + machineIdentifier()));
}

std::string LinuxDevice::machine() const {
  return systemNames().machine;
}

std::optional<InterfaceIdiom> LinuxDevice::userInterfaceIdiom() const {
  if (idiom_) return idiom_;
  const std::optional<Monitor> monitor = primaryMonitor();
  if (!monitor) return std::nullopt;
  const double shorter = std::min(monitor->size.width, monitor->size.height);
  return shorter < kTabletFrom ? InterfaceIdiom::Phone : InterfaceIdiom::Tablet;
}

std::vector<std::string> LinuxDevice::preferredLanguages() const {
  return languagesFrom(std::getenv("LANGUAGE"), std::getenv("LC_ALL"), std::getenv("LC_MESSAGES"),
                       std::getenv("LANG"));
}

bool LinuxDevice::hasSuperuserRights() const {
  return geteuid() == 0;
}

std::vector<std::string> languagesFrom(const char* language, const char* all, const char* messages,
                                       const char* lang) {
  std::string locale;
  for (const char* value : {all, messages, lang}) {
    if (locale.empty() && value) locale = value;
  }
  const std::string base = languageFrom(locale);
  std::vector<std::string> languages;
  const auto add = [&](const std::string& name) {
    if (!name.empty() && std::find(languages.begin(), languages.end(), name) == languages.end()) {
      languages.push_back(name);
    }
  };
  if (!base.empty() && language) {  // LANGUAGE counts only where the locale is not "C"
    std::string_view rest = language;
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find(':'), rest.size());
      add(languageFrom(rest.substr(0, end)));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
  add(base);
  return languages;
}

}  // namespace valdren::platform
