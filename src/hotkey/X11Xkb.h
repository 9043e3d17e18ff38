#pragma once

#include <xcb/xcb.h>

// The header has a field of this name, which C++ does not allow.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
