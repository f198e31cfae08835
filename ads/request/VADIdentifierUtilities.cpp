#include "ads/request/VADIdentifierUtilities.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <tuple>

#include "ads/protocol/Parameters.h"
#include "ads/request/VADJsonSafe.h"
#include "ads/support/VADNumberUtilities.h"
#include "ads/support/VAD_VTMStringEncoding.h"
#include "platform/application/Application.h"
#include "platform/base/Crypto.h"
#include "platform/base/MainThread.h"
#include "platform/base/Text.h"
#include "platform/device/AudioSession.h"
#include "platform/device/Device.h"
#include "platform/storage/Bundle.h"
#include "platform/storage/Folders.h"
#include "platform/storage/PropertyList.h"

namespace valdren {
namespace {

constexpr const char* kMetadataFile = "iTunesMetadata.plist";
constexpr const char* kTabletModel = "iPad";

constexpr int kRouteSpeaker = 1;
constexpr int kRouteHeadphones = 2;
constexpr int kRouteNone = 3;
constexpr int kRouteOther = 5;

/// Removes and gives the number before the next ".", 0 when there is none.
int takeVersionPart(std::string_view& version) {
  const std::size_t end = std::min(version.find('.'), version.size());
  const std::int64_t number = platform::Value(version.substr(0, end)).integerValue();
  version.remove_prefix(std::min(end + 1, version.size()));
  using Limits = std::numeric_limits<int>;
  return static_cast<int>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

std::string applicationName() {
  const platform::Bundle& bundle = platform::Bundle::main();
  const std::string version = bundle.version() ? *bundle.version() + "." : "";
  return platform::repairedUTF8(version + "iphone." + bundle.identifier());
}

bool canOpen(std::string_view text) {
  const auto url = platform::URL::parse(text);
  return url && platform::Application::shared().canOpenURL(*url);
}

/// One bit for each known application that reads books.
int bookApplications() {
  return (canOpen("itms-books://") ? 1 : 0) | (canOpen("kindle://home") ? 2 : 0);
}

platform::Value number(double value) {
  return VADNumberUtilities::stringWithFloat(static_cast<float>(value));
}

}  // namespace

VADIdentifierUtilities& VADIdentifierUtilities::standard() {
  static VADIdentifierUtilities instance;
  return instance;
}

VADIdentifierUtilities::VADIdentifierUtilities()
    : isPhoneIdiom_(platform::Device::shared().userInterfaceIdiom().value_or(
                        platform::InterfaceIdiom::Phone) == platform::InterfaceIdiom::Phone),
      isJailbroken_(checkIsJailbroken()) {}

bool VADIdentifierUtilities::checkIsJailbroken() {
  platform::assertMainThread();
  // The owner of a Linux machine may always become its superuser, which says nothing. An
  // application that runs as the superuser is another matter: nothing stands between it and the
  // rest of the machine.
  return platform::Device::shared().hasSuperuserRights();
}

double VADIdentifierUtilities::screenDensity() const {
  return platform::Screen::shared().scale().value_or(1.0);
}

bool VADIdentifierUtilities::isOrientationLandscape() const {
  return platform::isLandscape(platform::Application::shared().statusBarOrientation());
}

platform::Size VADIdentifierUtilities::screenSize() const {
  const platform::Application& application = platform::Application::shared();
  platform::Size size = platform::Screen::shared().applicationFrame().size();
  if (!application.isStatusBarHidden()) size.height += application.statusBarHeight();
  return size;
}

std::string VADIdentifierUtilities::deviceModel() const {
  return platform::Device::shared().model();
}

std::string VADIdentifierUtilities::osVersion() const {
  return platform::Device::shared().systemVersion();
}

void VADIdentifierUtilities::getOSMajor(int* major, int* minor, int* bugFix) {
  const std::string text = platform::Device::shared().systemVersion();
  std::string_view version = text;
  for (int* const part : {major, minor, bugFix}) {
    const int number = takeVersionPart(version);
    if (part) *part = number;
  }
}

bool VADIdentifierUtilities::isOSAtLeastMajor(int major, int minor, int bug) {
  int osMajor = 0;
  int osMinor = 0;
  int osBug = 0;
  getOSMajor(&osMajor, &osMinor, &osBug);
  return std::tie(osMajor, osMinor, osBug) >= std::tie(major, minor, bug);
}

platform::Dictionary VADIdentifierUtilities::readITunesMetadataFileAt(const std::string& path) {
  const std::optional<platform::Value> content = platform::readPropertyList(path);
  if (!content || !content->dictionary()) return {};
  return jsonSafe(*content->dictionary());
}

const platform::Dictionary& VADIdentifierUtilities::iTunesMetadata() {
  if (!iTunesMetadata_) {
    iTunesMetadata_.emplace();
    if (const auto documents = platform::documentsFolder()) {
      const auto path = std::filesystem::path(*documents) / ".." / kMetadataFile;
      iTunesMetadata_ = readITunesMetadataFileAt(path.lexically_normal().string());
    }
  }
  return *iTunesMetadata_;
}

const std::optional<std::string>& VADIdentifierUtilities::locale() {
  if (!locale_) {
    const std::vector<std::string> languages = platform::Device::shared().preferredLanguages();
    if (!languages.empty()) locale_ = platform::lowercase(languages.front());
  }
  return locale_;
}

const std::string& VADIdentifierUtilities::deviceIdentifier() {
  if (!deviceIdentifier_) {
    const auto digest = platform::md5(platform::Device::shared().uniqueIdentifier());
    deviceIdentifier_ = VAD_VTMStringEncoding::hexStringEncoding()->encode(
        {reinterpret_cast<const char*>(digest.data()), digest.size()});
  }
  return *deviceIdentifier_;
}

const std::string& VADIdentifierUtilities::deviceSubmodel() {
  if (!deviceSubmodel_) deviceSubmodel_ = platform::Device::shared().machine();
  return *deviceSubmodel_;
}

int VADIdentifierUtilities::audioRoute() const {
  platform::AudioSession& session = platform::AudioSession::shared();
  const auto initialized = session.initialize();
  if (!initialized && initialized.error().code != platform::AudioSession::kAlreadyInitialized) {
    return kRouteSpeaker;
  }
  const std::optional<std::string> route = session.route().valueOr(std::nullopt);
  if (!route) return kRouteSpeaker;
  if (route->empty()) return kRouteNone;
  if (*route == "Headphone" || *route == "Headset") return kRouteHeadphones;
  return *route == "Speaker" ? kRouteSpeaker : kRouteOther;
}

platform::Dictionary VADIdentifierUtilities::canOpenURLs(
    const std::vector<std::string>& urls) const {
  platform::assertMainThread();
  platform::Dictionary answers;
  for (const std::string& url : urls) answers.set(url, canOpen(url));
  return answers;
}

platform::Dictionary VADIdentifierUtilities::parameters() {
  platform::assertMainThread();
  const std::string model = deviceModel();
  platform::Dictionary parameters;
  if (model == kTabletModel && isPhoneIdiom())
    parameters.set(kVADParameterPhoneScreenOnTablet, "1");
  parameters.set(kVADParameterMetadata, iTunesMetadata());
  parameters.set(kVADParameterApplication, applicationName());
  if (isJailbroken()) parameters.set(kVADParameterUnlocked, "1");
  parameters.set(kVADParameterDevice, deviceIdentifier());
  parameters.set(kVADParameterModel, model);
  parameters.set(kVADParameterSubmodel, deviceSubmodel());
  parameters.setIfPresent(kVADParameterLanguage, locale());
  parameters.set(kVADParameterAudioRoute, std::to_string(audioRoute()));
  parameters.set(kVADParameterOrientation, isOrientationLandscape() ? "l" : "p");
  parameters.set(kVADParameterDensity, number(screenDensity()));
  const platform::Size size = screenSize();
  parameters.set(kVADParameterWidth, number(size.width));
  parameters.set(kVADParameterHeight, number(size.height));
  if (const int applications = bookApplications())
    parameters.set(kVADParameterBookApplications, applications);
  return parameters;
}

}  // namespace valdren
