#include "Platform/macos/AppKitPanelWindow.h"

#import <AppKit/AppKit.h>

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

void setChrome(NSWindow *window)
{
    window.styleMask = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskUtilityWindow |
                       NSWindowStyleMaskNonactivatingPanel | NSWindowStyleMaskFullSizeContentView;
    window.titleVisibility = NSWindowTitleHidden;
    window.titlebarAppearsTransparent = YES;
    window.movableByWindowBackground = YES;
    for (const NSWindowButton button : {NSWindowMiniaturizeButton, NSWindowZoomButton, NSWindowCloseButton}) {
        [window standardWindowButton:button].hidden = YES;
    }
}

void setFloating(NSWindow *window)
{
    if ([window isKindOfClass:[NSPanel class]]) {
        auto *const panel = static_cast<NSPanel *>(window);
        panel.floatingPanel = YES;
        panel.becomesKeyOnlyIfNeeded = YES;
    }
    window.level = NSFloatingWindowLevel;
    window.collectionBehavior =
        NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary;
    window.hidesOnDeactivate = NO;
    window.releasedWhenClosed = NO;
}

} // namespace

void AppKitPanelWindow::makePanel(QWindow &window)
{
    NSWindow *const native = nativeWindow(window);
    setChrome(native);
    setFloating(native);
    window.removeEventFilter(this);
    window.installEventFilter(this);
}

bool AppKitPanelWindow::orderFront(QWindow &window)
{
    // Qt orders windows front within the active application only.
    [nativeWindow(window) orderFrontRegardless];
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
    }
    return QObject::eventFilter(watched, event);
}

} // namespace orvesa
