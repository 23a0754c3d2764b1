#include "Platform/macos/AppKitMouseMonitor.h"

#include "Platform/macos/AppKitCoordinates.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace orvesa {

/// The system's token, counted by the compiler.
struct AppKitMouseMonitor::Monitor {
    id token = nil;
};

AppKitMouseMonitor::AppKitMouseMonitor() : m_monitor(std::make_unique<Monitor>()) {}

AppKitMouseMonitor::~AppKitMouseMonitor()
{
    setMouseDownHandler({});
}

void AppKitMouseMonitor::setMouseDownHandler(Handler handler)
{
    m_handler = std::move(handler);
    if (!m_handler && m_monitor->token != nil) {
        [NSEvent removeMonitor:m_monitor->token];
        m_monitor->token = nil;
    } else if (m_handler && m_monitor->token == nil) {
        constexpr NSEventMask presses =
            NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown | NSEventMaskOtherMouseDown;
        m_monitor->token = [NSEvent addGlobalMonitorForEventsMatchingMask:presses
                                                                  handler:^(NSEvent *) {
                                                                      mouseDown();
                                                                  }];
    }
}

void AppKitMouseMonitor::mouseDown()
{
    const Handler handler = m_handler; // it may end the monitoring
    if (handler) {
        handler(AppKitCoordinates::fromBottomLeft(NSEvent.mouseLocation));
    }
}

} // namespace orvesa
