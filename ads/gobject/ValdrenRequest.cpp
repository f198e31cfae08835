#include "ads/gobject/ValdrenRequest.h"

#include <new>
#include <string>
#include <vector>

#include "ads/gobject/ValdrenRequestPrivate.h"
#include "ads/gobject/VariantValue.h"

struct _ValdrenRequest {
  GObject parent;
  std::shared_ptr<valdren::VADRequest> request;
  /// As it was set, to be told again.
  GVariant* additionalParameters;
};

G_DEFINE_FINAL_TYPE(ValdrenRequest, valdren_request, G_TYPE_OBJECT)

namespace {

enum Property : guint {
  kTesting = 1,
  kTestDevices,
  kKeywords,
  kGender,
  kBirthday,
  kAdditionalParameters
};

using Texts = std::optional<std::vector<std::string>>;

Texts textsOf(const GValue* value) {
  const auto* const texts = static_cast<char* const*>(g_value_get_boxed(value));
  if (!texts) return std::nullopt;
  return std::vector<std::string>(texts, texts + g_strv_length(const_cast<char**>(texts)));
}

void putTexts(GValue* value, const Texts& texts) {
  if (!texts) return;
  GStrvBuilder* const builder = g_strv_builder_new();
  for (const auto& text : *texts) g_strv_builder_add(builder, text.c_str());
  g_value_take_boxed(value, g_strv_builder_end(builder));
  g_strv_builder_unref(builder);
}

std::optional<valdren::platform::Date> dateOf(const GValue* value) {
  auto* const date = static_cast<GDateTime*>(g_value_get_boxed(value));
  if (!date) return std::nullopt;
  return valdren::platform::Date(double(g_date_time_to_unix(date)));
}

void setAdditionalParameters(ValdrenRequest* self, GVariant* parameters) {
  g_clear_pointer(&self->additionalParameters, g_variant_unref);
  if (!parameters) return self->request->setAdditionalParameters(std::nullopt);
  self->additionalParameters = g_variant_ref_sink(parameters);
  const auto value = valueOfVariant(parameters);
  self->request->setAdditionalParameters(*value->dictionary());
}

void setProperty(GObject* object, guint property, const GValue* value, GParamSpec* spec) {
  auto* const self = VALDREN_REQUEST(object);
  valdren::VADRequest& request = *self->request;
  switch (property) {
    case kTesting: return request.setTesting(g_value_get_boolean(value));
    case kTestDevices: return request.setTestDevices(textsOf(value));
    case kKeywords: return request.setKeywords(textsOf(value));
    case kGender: return request.setGender(g_value_get_enum(value));
    case kBirthday: return request.setBirthday(dateOf(value));
    case kAdditionalParameters: return setAdditionalParameters(self, g_value_get_variant(value));
    default: G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, spec);
  }
}

void getProperty(GObject* object, guint property, GValue* value, GParamSpec* spec) {
  auto* const self = VALDREN_REQUEST(object);
  const valdren::VADRequest& request = *self->request;
  switch (property) {
    case kTesting: return g_value_set_boolean(value, request.isTesting());
    case kTestDevices: return putTexts(value, request.testDevices());
    case kKeywords: return putTexts(value, request.keywords());
    case kGender: return g_value_set_enum(value, request.gender());
    case kBirthday:
      if (const auto& date = request.birthday()) {
        g_value_take_boxed(value,
                           g_date_time_new_from_unix_local(gint64(date->secondsSince1970())));
      }
      return;
    case kAdditionalParameters: return g_value_set_variant(value, self->additionalParameters);
    default: G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, spec);
  }
}

void finalize(GObject* object) {
  auto* const self = VALDREN_REQUEST(object);
  g_clear_pointer(&self->additionalParameters, g_variant_unref);
  std::destroy_at(&self->request);
  G_OBJECT_CLASS(valdren_request_parent_class)->finalize(object);
}

}  // namespace

static void valdren_request_class_init(ValdrenRequestClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->set_property = setProperty;
  object->get_property = getProperty;
  object->finalize = finalize;
  const auto flags = GParamFlags(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
  const auto install = [&](guint property, GParamSpec* spec) {
    g_object_class_install_property(object, property, spec);
  };
  install(kTesting, g_param_spec_boolean("testing", nullptr, nullptr, FALSE, flags));
  install(kTestDevices, g_param_spec_boxed("test-devices", nullptr, nullptr, G_TYPE_STRV, flags));
  install(kKeywords, g_param_spec_boxed("keywords", nullptr, nullptr, G_TYPE_STRV, flags));
  install(kGender, g_param_spec_enum("gender", nullptr, nullptr, VALDREN_TYPE_GENDER,
                                     VALDREN_GENDER_UNKNOWN, flags));
  install(kBirthday, g_param_spec_boxed("birthday", nullptr, nullptr, G_TYPE_DATE_TIME, flags));
  install(kAdditionalParameters, g_param_spec_variant("additional-parameters", nullptr, nullptr,
                                                      G_VARIANT_TYPE_VARDICT, nullptr, flags));
}

static void valdren_request_init(ValdrenRequest* self) {
  new (&self->request) std::shared_ptr<valdren::VADRequest>(valdren::VADRequest::request());
}

const std::shared_ptr<valdren::VADRequest>& valdrenRequestOf(ValdrenRequest* request) {
  return request->request;
}

GType valdren_gender_get_type(void) {
  static const GEnumValue values[] = {
      {VALDREN_GENDER_UNKNOWN, "VALDREN_GENDER_UNKNOWN", "unknown"},
      {VALDREN_GENDER_MALE, "VALDREN_GENDER_MALE", "male"},
      {VALDREN_GENDER_FEMALE, "VALDREN_GENDER_FEMALE", "female"},
      {0, nullptr, nullptr},
  };
  static const GType type = g_enum_register_static("ValdrenGender", values);
  return type;
}

ValdrenRequest* valdren_request_new(void) {
  return VALDREN_REQUEST(g_object_new(VALDREN_TYPE_REQUEST, nullptr));
}

void valdren_request_add_keyword(ValdrenRequest* self, const char* keyword) {
  g_return_if_fail(VALDREN_IS_REQUEST(self) && keyword);
  self->request->addKeyword(keyword);
}

void valdren_request_set_birthday_date(ValdrenRequest* self, int month, int day, int year) {
  g_return_if_fail(VALDREN_IS_REQUEST(self));
  self->request->setBirthdayWithMonth(month, day, year);
}

void valdren_request_set_location(ValdrenRequest* self, double latitude, double longitude,
                                  double accuracy) {
  g_return_if_fail(VALDREN_IS_REQUEST(self));
  self->request->setLocationWithLatitude(float(latitude), float(longitude), float(accuracy));
}

void valdren_request_set_location_description(ValdrenRequest* self, const char* description) {
  g_return_if_fail(VALDREN_IS_REQUEST(self) && description);
  self->request->setLocationWithDescription(description);
}
