#include "Platform/macos/AppKitCoordinates.h"

namespace orvesa::AppKitCoordinates {

QPoint fromBottomLeft(NSPoint point)
{
    // The first screen in the list is the one that has the origin.
    const NSScreen *const screen = NSScreen.screens.firstObject;
    const CGFloat height = screen == nil ? 0 : screen.frame.size.height;
    return {qRound(point.x), qRound(height - point.y)};
}

} // namespace orvesa::AppKitCoordinates
