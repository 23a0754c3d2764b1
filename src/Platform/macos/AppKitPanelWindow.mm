#include "Platform/macos/AppKitPanelWindow.h"

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <QAccessible>
#include <QEvent>
#include <QString>
#include <QWindow>

namespace orvesa {

namespace {

NSWindow *nativeWindow(const QWindow &window)
{
    // On macOS a window's identifier is its view, lent for as long as the window lives.
    const auto *const view = (__bridge NSView *)reinterpret_cast<void *>(window.winId());
    return view.window;
}

BOOL isNoBackground(id view, SEL selector)
{
    Q_UNUSED(view)
    Q_UNUSED(selector)
    return NO;
}

/// A window that its background moves takes a translucent view for background, and a press in it for a drag. Qt's views
/// want every press for themselves, so that text can be selected; what moves the panel is Qt's to say.
void keepPresses(NSView *view)
{
    const SEL selector = @selector(mouseDownCanMoveWindow);
    const char *const types = method_getTypeEncoding(class_getInstanceMethod(view.class, selector));
    class_addMethod(view.class, selector, reinterpret_cast<IMP>(&isNoBackground), types);
}

void setPanelProperties(NSWindow *window)
{
    NSPanel *const panel = [window isKindOfClass:NSPanel.class] ? static_cast<NSPanel *>(window) : nil;
    window.styleMask = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskUtilityWindow |
                       NSWindowStyleMaskNonactivatingPanel | NSWindowStyleMaskFullSizeContentView;
    panel.floatingPanel = YES;
    window.level = NSFloatingWindowLevel;
    window.collectionBehavior =
        NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary;
    window.titleVisibility = NSWindowTitleHidden;
    window.titlebarAppearsTransparent = YES;
    window.movableByWindowBackground = YES;
    panel.becomesKeyOnlyIfNeeded = YES;
    window.hidesOnDeactivate = NO;
    window.releasedWhenClosed = NO;
    for (const NSWindowButton button : {NSWindowMiniaturizeButton, NSWindowZoomButton, NSWindowCloseButton}) {
        [window standardWindowButton:button].hidden = YES;
    }
}

} // namespace

void AppKitPanelWindow::makePanel(QWindow &window)
{
    NSWindow *const native = nativeWindow(window);
    keepPresses(native.contentView);
    setPanelProperties(native);
    window.removeEventFilter(this);
    window.installEventFilter(this);
}

bool AppKitPanelWindow::orderFront(QWindow &window)
{
    NSWindow *const native = nativeWindow(window);
    // Qt takes windows that stay when their application is left out of the floating level then, and does not bring
    // those back that are hidden.
    native.level = NSFloatingWindowLevel;
    // Qt orders windows front within the active application only.
    [native orderFrontRegardless];
    return true;
}

void AppKitPanelWindow::announce(QObject &window, const QString &text)
{
    const QAccessibleInterface *const interface = QAccessible::queryAccessibleInterface(&window);
    const QWindow *const shown = interface == nullptr ? nullptr : interface->window();
    if (shown == nullptr) {
        return;
    }
    NSAccessibilityPostNotificationWithUserInfo(
        nativeWindow(*shown), NSAccessibilityAnnouncementRequestedNotification, @{
            NSAccessibilityAnnouncementKey : text.toNSString(),
            NSAccessibilityPriorityKey : [NSNumber numberWithLongLong:NSAccessibilityPriorityHigh],
        });
}

bool AppKitPanelWindow::eventFilter(QObject *watched, QEvent *event)
{
    auto *const window = qobject_cast<QWindow *>(watched);
    if (window != nullptr && event->type() == QEvent::Show) {
        // Sent before Qt shows the window.
        QMetaObject::invokeMethod(
            window, [this, window] { orderFront(*window); }, Qt::QueuedConnection);
    } else if (window != nullptr && event->type() == QEvent::MouseButtonPress) {
        // Qt's view never says that it needs the keyboard, for copying what is selected with keys, for example.
        [nativeWindow(*window) makeKeyWindow];
    }
    return QObject::eventFilter(watched, event);
}

} // namespace orvesa
