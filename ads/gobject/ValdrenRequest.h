/* What an application asks for: targeting hints, test settings, parameters of its own. */
#pragma once

#include <glib-object.h>

#include "ads/gobject/ValdrenMacros.h"

G_BEGIN_DECLS

/**
 * ValdrenGender:
 * @VALDREN_GENDER_UNKNOWN: Not known, or not told.
 * @VALDREN_GENDER_MALE: Male.
 * @VALDREN_GENDER_FEMALE: Female.
 *
 * Who an ad is for.
 */
typedef enum {
  VALDREN_GENDER_UNKNOWN = 0,
  VALDREN_GENDER_MALE = 1,
  VALDREN_GENDER_FEMALE = 2
} ValdrenGender;

#define VALDREN_TYPE_GENDER (valdren_gender_get_type())
VALDREN_API GType valdren_gender_get_type(void);

/**
 * ValdrenRequest:
 *
 * The options of a request. A banner keeps a copy of them when it loads, so later changes need
 * another call of [method@Valdren.Banner.load_request]. Main thread only.
 */
/**
 * ValdrenRequest:testing:
 *
 * Deprecated in favour of [property@Valdren.Request:test-devices]: asks for test ads everywhere.
 */
/**
 * ValdrenRequest:test-devices:
 *
 * Identifiers of devices that get test ads; %NULL when never set.
 */
/**
 * ValdrenRequest:keywords:
 *
 * What the person may be interested in; %NULL when never set.
 */
/**
 * ValdrenRequest:gender:
 *
 * Who the ad is for.
 */
/**
 * ValdrenRequest:birthday:
 *
 * Sent as its day in the device's time zone; %NULL when never set.
 */
/**
 * ValdrenRequest:additional-parameters:
 *
 * A dictionary of type `a{sv}`, sent along; %NULL when never set. Texts, booleans, numbers, and
 * arrays and dictionaries of these are sent; values of other types are left out.
 */
#define VALDREN_TYPE_REQUEST (valdren_request_get_type())
VALDREN_API G_DECLARE_FINAL_TYPE(ValdrenRequest, valdren_request, VALDREN, REQUEST, GObject)

/**
 * valdren_request_new:
 *
 * Returns: (transfer full): a request with default values
 */
VALDREN_API ValdrenRequest* valdren_request_new(void);

/**
 * valdren_request_add_keyword:
 * @self: a request
 * @keyword: what the person may be interested in; an empty one is ignored
 *
 * Adds a keyword to those that are there.
 */
VALDREN_API void valdren_request_add_keyword(ValdrenRequest* self, const char* keyword);

/**
 * valdren_request_set_birthday_date:
 * @self: a request
 * @month: 1 to 12
 * @day: 1 to 31
 * @year: 1 to 9999
 *
 * Sets the birthday as a date of the Gregorian calendar in the device's time zone. Components
 * beyond their range carry over into the next larger one.
 */
VALDREN_API void valdren_request_set_birthday_date(ValdrenRequest* self, int month, int day,
                                                   int year);

/**
 * valdren_request_set_location:
 * @self: a request
 * @latitude: degrees, -90 to 90
 * @longitude: degrees, -180 to 180
 * @accuracy: metres
 *
 * Says where the person is. A 0 for either coordinate leaves the request without a location.
 */
VALDREN_API void valdren_request_set_location(ValdrenRequest* self, double latitude,
                                              double longitude, double accuracy);

/**
 * valdren_request_set_location_description:
 * @self: a request
 * @description: free text; an empty one leaves the request without a location
 *
 * Says in words where the person is.
 */
VALDREN_API void valdren_request_set_location_description(ValdrenRequest* self,
                                                          const char* description);

G_END_DECLS
