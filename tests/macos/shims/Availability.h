#pragma once
// The version numbers that Qt's headers compare, and the attribute by which an interface says since when it is there.
#include <AvailabilityMacros.h>
#define __MAC_10_12 101200
#define __MAC_10_13 101300
#define __MAC_10_14 101400
#define __MAC_10_15 101500
#define __MAC_10_16 101600
#define __MAC_11_0 110000
#define __MAC_12_0 120000
#define __MAC_13_0 130000
#define __MAC_OS_X_VERSION_MIN_REQUIRED 130000
#define __MAC_OS_X_VERSION_MAX_ALLOWED 130000
