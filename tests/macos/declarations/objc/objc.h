#pragma once

// The Objective-C runtime's own names. See DeclarationSupport.h.

#if defined(__aarch64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
