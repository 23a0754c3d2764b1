#include "Platform/macos/AppKitWorkspace.h"

#import <AppKit/AppKit.h>

namespace orvesa {

std::optional<qint64> AppKitWorkspace::frontmostApplication() const
{
    NSRunningApplication *const application = NSWorkspace.sharedWorkspace.frontmostApplication;
    return application == nil ? std::nullopt : std::optional(qint64{application.processIdentifier});
}

bool AppKitWorkspace::open(const QUrl &url)
{
    NSURL *const address = url.toNSURL();
    return address != nil && [NSWorkspace.sharedWorkspace openURL:address];
}

} // namespace orvesa
