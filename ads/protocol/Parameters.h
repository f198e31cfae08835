// The keys of an ad request.
#pragma once

namespace valdren {

// The banner and its place.
inline constexpr const char* kVADParameterSlotName = "slotname";
inline constexpr const char* kVADParameterFormat = "format";
inline constexpr const char* kVADParameterFrame = "ad_frame";
inline constexpr const char* kVADParameterBounds = "ad_bounds";
inline constexpr const char* kVADFormatInterstitial = "interstitial_mb";

// What the publisher tells.
inline constexpr const char* kVADParameterTesting = "testing";
inline constexpr const char* kVADParameterTestDevice = "adtest";
inline constexpr const char* kVADParameterExtras = "extras";
inline constexpr const char* kVADParameterGender = "cust_gender";
inline constexpr const char* kVADParameterBirthday = "cust_age";
inline constexpr const char* kVADParameterKeywords = "kw";
inline constexpr const char* kVADParameterLocation = "uule";

// The application, its client and the device.
inline constexpr const char* kVADParameterVersion = "js";
inline constexpr const char* kVADParameterNetwork = "net";
inline constexpr const char* kVADParameterApplication = "app_name";
inline constexpr const char* kVADParameterDevice = "isu";
inline constexpr const char* kVADParameterModel = "platform";
inline constexpr const char* kVADParameterSubmodel = "submodel";
inline constexpr const char* kVADParameterPhoneScreenOnTablet = "ios_ipadc";
inline constexpr const char* kVADParameterMetadata = "ios_metadata";
inline constexpr const char* kVADParameterUnlocked = "ios_jb";
inline constexpr const char* kVADParameterLanguage = "hl";
inline constexpr const char* kVADParameterAudioRoute = "u_audio";
inline constexpr const char* kVADParameterOrientation = "u_so";
inline constexpr const char* kVADParameterDensity = "u_sd";
inline constexpr const char* kVADParameterWidth = "u_w";
inline constexpr const char* kVADParameterHeight = "u_h";
inline constexpr const char* kVADParameterBookApplications = "cap_bs";

// Statistics keys; each is also the name of a request parameter.
inline constexpr const char* kVADParameterSessionID = "session_id";
inline constexpr const char* kVADParameterTotalAdRequests = "preqs";
inline constexpr const char* kVADParameterPriorClickCount = "pcc";
inline constexpr const char* kVADParameterPriorLandingPageNavCount = "plpnc";
inline constexpr const char* kVADParameterPriorLandingPageSSLNavCount = "plpsnc";
inline constexpr const char* kVADParameterPriorClickBackgroundedApp = "pclb";
inline constexpr const char* kVADParameterPriorClickBreakOut = "pcbo";
inline constexpr const char* kVADParameterAppOpenInterstitialTimedOut = "aoi_timedout";
inline constexpr const char* kVADParameterAppOpenInterstitialNoFill = "aoi_nofill";
inline constexpr const char* kVADParameterPriorRequestLatency = "prl";
inline constexpr const char* kVADParameterPriorClickLatency = "pcl";
inline constexpr const char* kVADParameterPriorClickString = "pai";
inline constexpr const char* kVADParameterPriorImpressionTicketString = "pit";
inline constexpr const char* kVADParameterPriorPreClickLatency = "ppcl";
inline constexpr const char* kVADParameterPriorClickRedirectLatency = "pcrl";
inline constexpr const char* kVADParameterPriorLandingPageLoad = "plpl";
inline constexpr const char* kVADParameterPriorLandingPageDuration = "plpd";
inline constexpr const char* kVADParameterTimeSinceFirstRequest = "ptime";

// Items of an address's query.
inline constexpr const char* kVADQuerySequence = "seq_num";
inline constexpr const char* kVADQueryRequestSignals = "ms";
inline constexpr const char* kVADQueryClickSignals = "cs";
/// An ad's identifier, in the addresses that its clicks open.
inline constexpr const char* kVADQueryAdIdentifier = "ai";

}  // namespace valdren
