#include "Platform/macos/AppKitApplication.h"

#import <AppKit/AppKit.h>

namespace orvesa::AppKitApplication {

void becomeAccessory()
{
    [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
}

} // namespace orvesa::AppKitApplication
