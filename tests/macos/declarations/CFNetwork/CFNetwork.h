#pragma once

// Errors of transfers. See DeclarationSupport.h.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

extern const CFStringRef kCFErrorDomainCFNetwork;

typedef CF_ENUM(int, CFNetworkErrors){
    kCFURLErrorTimedOut = -1001,
    kCFURLErrorCannotFindHost = -1003,
    kCFURLErrorCannotConnectToHost = -1004,
    kCFURLErrorNetworkConnectionLost = -1005,
    kCFURLErrorHTTPTooManyRedirects = -1007,
    kCFURLErrorNotConnectedToInternet = -1009,
    kCFURLErrorSecureConnectionFailed = -1200,
};

} // extern "C"
