#pragma once

// The one place where AppKit's screen coordinates, whose origin is the main screen's lower left corner, become Qt's,
// whose origin is its upper left one. Main thread. Objective-C++ only.

#include <QPoint>

#import <AppKit/AppKit.h>

namespace orvesa::AppKitCoordinates {

[[nodiscard]] QPoint fromBottomLeft(NSPoint point);

} // namespace orvesa::AppKitCoordinates
