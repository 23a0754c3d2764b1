#pragma once

// AppKit, as far as the adapters use it. See DeclarationSupport.h.

#include <Foundation/Foundation.h>

@class NSColor, NSPasteboardItem, NSScreen, NSWindow;

typedef NSString *NSPasteboardType;

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited,
};

extern "C" NSNotificationName const NSApplicationDidBecomeActiveNotification;

@interface NSResponder : NSObject
@end

@interface NSApplication : NSResponder
@property (class, readonly, strong) NSApplication *sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
@end

@interface NSRunningApplication : NSObject
@property (readonly) pid_t processIdentifier;
@end

@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace *sharedWorkspace;
@property (readonly, strong) NSRunningApplication *frontmostApplication;
- (BOOL)openURL:(NSURL *)url;
@end

extern "C" NSPasteboardType const NSPasteboardTypeString;

@protocol NSPasteboardWriting <NSObject>
@end

@interface NSPasteboard : NSObject
@property (class, readonly, strong) NSPasteboard *generalPasteboard;
@property (readonly) NSInteger changeCount;
@property (readonly, copy) NSArray<NSPasteboardItem *> *pasteboardItems;
- (NSInteger)clearContents;
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>> *)objects;
- (NSString *)stringForType:(NSPasteboardType)dataType;
@end

@interface NSPasteboardItem : NSObject <NSPasteboardWriting>
@property (readonly, copy) NSArray<NSPasteboardType> *types;
- (NSData *)dataForType:(NSPasteboardType)type;
- (BOOL)setData:(NSData *)data forType:(NSPasteboardType)type;
@end

typedef NS_OPTIONS(unsigned long long, NSEventMask) {
    NSEventMaskLeftMouseDown = 1ULL << 1,
    NSEventMaskRightMouseDown = 1ULL << 3,
    NSEventMaskKeyDown = 1ULL << 10,
    NSEventMaskKeyUp = 1ULL << 11,
    NSEventMaskOtherMouseDown = 1ULL << 25,
};
typedef NS_ENUM(NSUInteger, NSEventType) {
    NSEventTypeLeftMouseDown = 1,
    NSEventTypeRightMouseDown = 3,
    NSEventTypeKeyDown = 10,
    NSEventTypeKeyUp = 11,
    NSEventTypeOtherMouseDown = 25,
};
typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
    NSEventModifierFlagCapsLock = 1 << 16,
    NSEventModifierFlagShift = 1 << 17,
    NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20,
};

@interface NSEvent : NSObject
@property (class, readonly) NSPoint mouseLocation;
@property (readonly) NSEventType type;
@property (readonly) NSEventModifierFlags modifierFlags;
@property (readonly) unsigned short keyCode;
@property (getter=isARepeat, readonly) BOOL ARepeat;
@property (readonly, copy) NSString *charactersIgnoringModifiers;
+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent *event))block;
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent * (^)(NSEvent *event))block;
+ (void)removeMonitor:(id)eventMonitor;
@end

@interface NSScreen : NSObject
@property (class, readonly, copy) NSArray<NSScreen *> *screens;
@property (readonly) NSRect frame;
@end

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
    NSWindowStyleMaskTitled = 1 << 0,
    NSWindowStyleMaskClosable = 1 << 1,
    NSWindowStyleMaskUtilityWindow = 1 << 4,
    NSWindowStyleMaskNonactivatingPanel = 1 << 7,
    NSWindowStyleMaskFullSizeContentView = 1 << 15,
};
typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};
typedef NS_ENUM(NSInteger, NSWindowTitleVisibility) {
    NSWindowTitleVisible = 0,
    NSWindowTitleHidden = 1,
};
typedef NS_ENUM(NSUInteger, NSWindowButton) {
    NSWindowCloseButton,
    NSWindowMiniaturizeButton,
    NSWindowZoomButton,
};
typedef NSInteger NSWindowLevel;
static const NSWindowLevel NSFloatingWindowLevel = 3;

@interface NSView : NSResponder
@property (readonly, strong) NSWindow *window;
@property (getter=isHidden) BOOL hidden;
@property (readonly) BOOL mouseDownCanMoveWindow;
@end

@interface NSControl : NSView
@end

@interface NSButton : NSControl
@end

@interface NSWindow : NSResponder
@property NSWindowStyleMask styleMask;
@property (strong) NSView *contentView;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property NSWindowTitleVisibility titleVisibility;
@property BOOL titlebarAppearsTransparent;
@property (getter=isMovableByWindowBackground) BOOL movableByWindowBackground;
@property BOOL hidesOnDeactivate;
@property (getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
- (NSButton *)standardWindowButton:(NSWindowButton)b;
- (void)orderFrontRegardless;
- (void)makeKeyWindow;
@end

@interface NSPanel : NSWindow
@property (getter=isFloatingPanel) BOOL floatingPanel;
@property BOOL becomesKeyOnlyIfNeeded;
@end

@interface NSGraphicsContext : NSObject
@property (class, strong) NSGraphicsContext *currentContext;
+ (NSGraphicsContext *)graphicsContextWithCGContext:(CGContextRef)graphicsPort flipped:(BOOL)initialFlippedState;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

@interface NSImage : NSObject
@property NSSize size;
+ (instancetype)imageWithSystemSymbolName:(NSString *)name
                 accessibilityDescription:(NSString *)description ORVESA_SINCE(11.0);
- (instancetype)initWithContentsOfFile:(NSString *)fileName;
- (void)drawInRect:(NSRect)rect;
- (CGImageRef)CGImageForProposedRect:(NSRect *)proposedDestRect
                             context:(NSGraphicsContext *)referenceContext
                               hints:(NSDictionary<NSString *, id> *)hints CF_RETURNS_NOT_RETAINED;
@end

typedef NSString *NSAccessibilityNotificationName;
typedef NSString *NSAccessibilityNotificationUserInfoKey;
typedef NS_ENUM(NSInteger, NSAccessibilityPriorityLevel){
    NSAccessibilityPriorityLow = 10,
    NSAccessibilityPriorityMedium = 50,
    NSAccessibilityPriorityHigh = 90,
};
extern "C" NSAccessibilityNotificationName const NSAccessibilityAnnouncementRequestedNotification;
extern "C" NSAccessibilityNotificationUserInfoKey const NSAccessibilityAnnouncementKey;
extern "C" NSAccessibilityNotificationUserInfoKey const NSAccessibilityPriorityKey;
extern "C" void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id> *userInfo);
