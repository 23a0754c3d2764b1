#include "Platform/macos/AXTrust.h"

#include "Platform/macos/CFConversion.h"

#include <ApplicationServices/ApplicationServices.h>

namespace orvesa {

bool AXTrust::isTrusted() const
{
    return AXIsProcessTrusted() != 0;
}

void AXTrust::requestTrust()
{
    const CFOwner<CFDictionaryRef> options = CFConversion::dictionary({{kAXTrustedCheckOptionPrompt, kCFBooleanTrue}});
    AXIsProcessTrustedWithOptions(options.get());
}

} // namespace orvesa
