#pragma once

// The macros that the declarations beside this file are written with, with the meaning that they have on macOS: an
// enumeration is a type of its own to which no number converts, options are plain numbers, a declaration that is newer
// than the oldest supported system says so.
//
// These declarations serve the checks on Linux only. They were written from the public interface documentation and hold
// just what the adapters use. A build on macOS never sees them.

#if defined(__APPLE__)
#define ORVESA_SINCE(version) __attribute__((availability(macos, introduced = version)))
#else
#define ORVESA_SINCE(version)
#endif

#define CF_ENUM(type, name)                                                                                            \
    enum name : type name;                                                                                             \
    enum __attribute__((enum_extensibility(open))) name : type
#define CF_OPTIONS(type, name)                                                                                         \
    type name;                                                                                                         \
    enum __attribute__((flag_enum, enum_extensibility(open))) : type
#define NS_ENUM(type, name) CF_ENUM(type, name)
#define NS_OPTIONS(type, name) CF_OPTIONS(type, name)

#if defined(__OBJC__)
#define CF_BRIDGED_TYPE(name) __attribute__((objc_bridge(name)))
#else
#define CF_BRIDGED_TYPE(name)
#endif

#if defined(__clang__)
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
#define CF_RETURNS_NOT_RETAINED __attribute__((cf_returns_not_retained))
#else
#define CF_RETURNS_RETAINED
#define CF_RETURNS_NOT_RETAINED
#undef CF_ENUM
#undef CF_OPTIONS
// GCC takes no name that is declared within its own typedef; the type is the same.
#define CF_ENUM(type, name) enum name : type
#define CF_OPTIONS(type, name)                                                                                         \
    type name;                                                                                                         \
    enum : type
#endif
