#pragma once

// Quartz: geometry, images, events. See DeclarationSupport.h.

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

typedef double CGFloat;
typedef struct CGPoint {
    CGFloat x;
    CGFloat y;
} CGPoint;
typedef struct CGSize {
    CGFloat width;
    CGFloat height;
} CGSize;
typedef struct CGRect {
    CGPoint origin;
    CGSize size;
} CGRect;

typedef struct CF_BRIDGED_TYPE(id) CGImage *CGImageRef;
typedef struct CF_BRIDGED_TYPE(id) CGColorSpace *CGColorSpaceRef;
typedef struct CF_BRIDGED_TYPE(id) CGContext *CGContextRef;

typedef CF_ENUM(std::uint32_t, CGImageAlphaInfo) {
    kCGImageAlphaNone,
    kCGImageAlphaPremultipliedLast,
    kCGImageAlphaPremultipliedFirst,
    kCGImageAlphaLast,
    kCGImageAlphaFirst,
    kCGImageAlphaNoneSkipLast,
    kCGImageAlphaNoneSkipFirst,
    kCGImageAlphaOnly,
};
typedef CF_ENUM(std::uint32_t, CGImageByteOrderInfo) {
    kCGImageByteOrderMask = 0x7000,
    kCGImageByteOrderDefault = (0 << 12),
    kCGImageByteOrder16Little = (1 << 12),
    kCGImageByteOrder32Little = (2 << 12),
    kCGImageByteOrder16Big = (3 << 12),
    kCGImageByteOrder32Big = (4 << 12),
};

extern const CFStringRef kCGColorSpaceSRGB;
CGColorSpaceRef CGColorSpaceCreateWithName(CFStringRef name) CF_RETURNS_RETAINED;
CGContextRef CGBitmapContextCreate(void *data, std::size_t width, std::size_t height, std::size_t bitsPerComponent,
                                   std::size_t bytesPerRow, CGColorSpaceRef space,
                                   std::uint32_t bitmapInfo) CF_RETURNS_RETAINED;

typedef struct CF_BRIDGED_TYPE(id) __CGEvent *CGEventRef;
typedef struct CF_BRIDGED_TYPE(id) __CGEventSource *CGEventSourceRef;
typedef std::uint16_t CGKeyCode;
typedef CF_ENUM(std::int32_t, CGEventSourceStateID) {
    kCGEventSourceStatePrivate = -1,
    kCGEventSourceStateCombinedSessionState = 0,
    kCGEventSourceStateHIDSystemState = 1,
};
typedef CF_ENUM(std::uint32_t, CGEventTapLocation) {
    kCGHIDEventTap = 0,
    kCGSessionEventTap,
    kCGAnnotatedSessionEventTap,
};
typedef CF_OPTIONS(std::uint64_t, CGEventFlags) {
    kCGEventFlagMaskAlphaShift = 0x00010000,
    kCGEventFlagMaskShift = 0x00020000,
    kCGEventFlagMaskControl = 0x00040000,
    kCGEventFlagMaskAlternate = 0x00080000,
    kCGEventFlagMaskCommand = 0x00100000,
};
CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID) CF_RETURNS_RETAINED;
CGEventFlags CGEventSourceFlagsState(CGEventSourceStateID stateID);
CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode virtualKey, bool keyDown) CF_RETURNS_RETAINED;
void CGEventSetFlags(CGEventRef event, CGEventFlags flags);
void CGEventPost(CGEventTapLocation tap, CGEventRef event);

} // extern "C"
