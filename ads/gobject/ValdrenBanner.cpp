#include "ads/gobject/ValdrenBanner.h"

#include "ads/gobject/BannerPeer.h"
#include "ads/gobject/Refusal.h"
#include "ads/gobject/ValdrenRequestPrivate.h"

struct _ValdrenBanner {
  GtkWidget parent;
  BannerPeer* peer;
  ValdrenRequest* request;
};

G_DEFINE_FINAL_TYPE(ValdrenBanner, valdren_banner, GTK_TYPE_WIDGET)

namespace {

enum Property : guint { kAdUnitID = 1, kRequest, kHasAd };

void setProperty(GObject* object, guint property, const GValue* value, GParamSpec* spec) {
  auto* const self = VALDREN_BANNER(object);
  switch (property) {
    case kAdUnitID: return valdren_banner_set_ad_unit_id(self, g_value_get_string(value));
    case kRequest:
      return valdren_banner_set_request(self,
                                        static_cast<ValdrenRequest*>(g_value_get_object(value)));
    default: G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, spec);
  }
}

void getProperty(GObject* object, guint property, GValue* value, GParamSpec* spec) {
  auto* const self = VALDREN_BANNER(object);
  switch (property) {
    case kAdUnitID: return g_value_take_string(value, valdren_banner_get_ad_unit_id(self));
    case kRequest: return g_value_set_object(value, self->request);
    case kHasAd: return g_value_set_boolean(value, valdren_banner_has_ad(self));
    default: G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, spec);
  }
}

void dispose(GObject* object) {
  auto* const self = VALDREN_BANNER(object);
  self->peer->release();
  g_clear_object(&self->request);
  G_OBJECT_CLASS(valdren_banner_parent_class)->dispose(object);
}

void finalize(GObject* object) {
  delete VALDREN_BANNER(object)->peer;
  G_OBJECT_CLASS(valdren_banner_parent_class)->finalize(object);
}

}  // namespace

static void valdren_banner_class_init(ValdrenBannerClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->set_property = setProperty;
  object->get_property = getProperty;
  object->dispose = dispose;
  object->finalize = finalize;
  const auto flags = G_PARAM_STATIC_STRINGS | G_PARAM_EXPLICIT_NOTIFY;
  const auto readWrite = GParamFlags(flags | G_PARAM_READWRITE);
  g_object_class_install_property(
      object, kAdUnitID, g_param_spec_string("ad-unit-id", nullptr, nullptr, "", readWrite));
  g_object_class_install_property(
      object, kRequest,
      g_param_spec_object("request", nullptr, nullptr, VALDREN_TYPE_REQUEST, readWrite));
  g_object_class_install_property(object, kHasAd,
                                  g_param_spec_boolean("has-ad", nullptr, nullptr, FALSE,
                                                       GParamFlags(flags | G_PARAM_READABLE)));
  BannerPeer::installSignals(G_TYPE_FROM_CLASS(type));
  GtkWidgetClass* const widget = GTK_WIDGET_CLASS(type);
  gtk_widget_class_set_layout_manager_type(widget, GTK_TYPE_BIN_LAYOUT);
  gtk_widget_class_set_accessible_role(widget, GTK_ACCESSIBLE_ROLE_GROUP);
  gtk_widget_class_set_css_name(widget, "valdrenbanner");
}

static void valdren_banner_init(ValdrenBanner* self) {
  self->peer = new BannerPeer(self);
  gtk_accessible_update_property(GTK_ACCESSIBLE(self), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 "Advertisement", -1);
}

GtkWidget* valdren_banner_new(const char* ad_unit_id) {
  if (isRefused("valdren_banner_new")) return nullptr;
  return GTK_WIDGET(
      g_object_new(VALDREN_TYPE_BANNER, "ad-unit-id", ad_unit_id ? ad_unit_id : "", nullptr));
}

void valdren_banner_load_request(ValdrenBanner* self, ValdrenRequest* request) {
  if (isRefused("valdren_banner_load_request")) return;
  g_return_if_fail(VALDREN_IS_BANNER(self) && (!request || VALDREN_IS_REQUEST(request)));
  if (!self->peer->banner()) return;
  if (request) valdren_banner_set_request(self, request);
  self->peer->findWindow();
  self->peer->banner()->loadRequest(self->request ? valdrenRequestOf(self->request) : nullptr);
}

char* valdren_banner_get_ad_unit_id(ValdrenBanner* self) {
  g_return_val_if_fail(VALDREN_IS_BANNER(self), nullptr);
  const auto* const banner = self->peer->banner();
  return g_strdup(banner ? banner->adUnitID().c_str() : "");
}

void valdren_banner_set_ad_unit_id(ValdrenBanner* self, const char* ad_unit_id) {
  if (isRefused("valdren_banner_set_ad_unit_id")) return;
  g_return_if_fail(VALDREN_IS_BANNER(self));
  auto* const banner = self->peer->banner();
  const std::string wanted = ad_unit_id ? ad_unit_id : "";
  if (!banner || banner->adUnitID() == wanted) return;
  banner->setAdUnitID(wanted);
  g_object_notify(G_OBJECT(self), "ad-unit-id");
}

ValdrenRequest* valdren_banner_get_request(ValdrenBanner* self) {
  g_return_val_if_fail(VALDREN_IS_BANNER(self), nullptr);
  return self->request;
}

void valdren_banner_set_request(ValdrenBanner* self, ValdrenRequest* request) {
  if (isRefused("valdren_banner_set_request")) return;
  g_return_if_fail(VALDREN_IS_BANNER(self) && (!request || VALDREN_IS_REQUEST(request)));
  if (g_set_object(&self->request, request)) g_object_notify(G_OBJECT(self), "request");
}

gboolean valdren_banner_has_ad(ValdrenBanner* self) {
  g_return_val_if_fail(VALDREN_IS_BANNER(self), FALSE);
  return self->peer->hasAd();
}
