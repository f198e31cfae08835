// Marks what the shared library shows to applications. All else stays inside it.
#pragma once

#define VALDREN_EXPORT __attribute__((visibility("default")))
