#pragma once

// The X keyboard extension's requests and events. The library's own header names a member with a C++ keyword; include
// this one in its place.

#define explicit explicitActions
#include <xcb/xkb.h> // IWYU pragma: export
#undef explicit
