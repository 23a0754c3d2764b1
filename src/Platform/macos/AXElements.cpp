#include "Platform/macos/AXElements.h"

#include "Platform/macos/AXElementHandle.h"
#include "Platform/macos/CFConversion.h"

#include <ApplicationServices/ApplicationServices.h>

namespace orvesa {

namespace {

/// How long a frozen application may hold up a call.
constexpr float messagingTimeoutInSeconds = 0.25F;

AccessibilityElement handle(CFOwner<AXUIElementRef> element)
{
    return element ? std::make_shared<const AXElementHandle>(std::move(element)) : nullptr;
}

AXUIElementRef lent(const AccessibilityElement &element)
{
    const auto *const handle = dynamic_cast<const AXElementHandle *>(element.get());
    return handle == nullptr ? nullptr : handle->element();
}

AccessibilityElement elementValue(CFTypeRef value)
{
    return handle(CFOwner<AXUIElementRef>::retaining(static_cast<AXUIElementRef>(value)));
}

/// A list counts only when everything in it is an element.
AccessibilityValue listValue(CFArrayRef array)
{
    std::vector<AccessibilityElement> elements;
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index) {
        const CFTypeRef entry = CFArrayGetValueAtIndex(array, index);
        if (CFGetTypeID(entry) != AXUIElementGetTypeID()) {
            return {};
        }
        elements.push_back(elementValue(entry));
    }
    return elements;
}

AccessibilityValue numberValue(CFNumberRef number)
{
    qint64 integer = 0;
    const bool isWhole =
        CFNumberIsFloatType(number) == 0 && CFNumberGetValue(number, kCFNumberSInt64Type, &integer) != 0;
    return isWhole ? AccessibilityValue(integer) : AccessibilityValue();
}

AccessibilityValue portValue(CFTypeRef value)
{
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFStringGetTypeID()) {
        return CFConversion::text(static_cast<CFStringRef>(value));
    }
    if (type == CFBooleanGetTypeID()) {
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
    }
    if (type == CFNumberGetTypeID()) {
        return numberValue(static_cast<CFNumberRef>(value));
    }
    if (type == AXUIElementGetTypeID()) {
        return elementValue(value);
    }
    return type == CFArrayGetTypeID() ? listValue(static_cast<CFArrayRef>(value)) : AccessibilityValue();
}

} // namespace

AccessibilityElement AXElements::systemWide()
{
    CFOwner<AXUIElementRef> element(AXUIElementCreateSystemWide());
    if (element) {
        // Set on this element it counts for every call of the process.
        AXUIElementSetMessagingTimeout(element.get(), messagingTimeoutInSeconds);
    }
    return handle(std::move(element));
}

AccessibilityElement AXElements::application(qint64 processIdentifier)
{
    return handle(CFOwner(AXUIElementCreateApplication(static_cast<pid_t>(processIdentifier))));
}

AccessibilityValue AXElements::copyAttribute(const AccessibilityElement &element, const QString &attribute)
{
    const AXUIElementRef reference = lent(element);
    const CFOwner<CFStringRef> name = CFConversion::string(attribute);
    if (reference == nullptr || !name) {
        return {};
    }
    CFOwner<CFTypeRef> value;
    const AXError error = AXUIElementCopyAttributeValue(reference, name.get(), value.receiver());
    return error == kAXErrorSuccess && value ? portValue(value.get()) : AccessibilityValue();
}

bool AXElements::performAction(const AccessibilityElement &element, const QString &action)
{
    const AXUIElementRef reference = lent(element);
    const CFOwner<CFStringRef> name = CFConversion::string(action);
    return reference != nullptr && name && AXUIElementPerformAction(reference, name.get()) == kAXErrorSuccess;
}

} // namespace orvesa
