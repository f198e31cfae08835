/* What every header of the C interface needs. */
#pragma once

#include <glib.h>

/* Marks what the library shows to applications. */
#ifndef __GI_SCANNER__
#define VALDREN_API __attribute__((visibility("default"))) extern
#else
#define VALDREN_API
#endif
