#pragma once

// An accessibility element, kept alive for as long as portable code holds it. Main thread.

#include "Platform/AccessibilityElementsPort.h"
#include "Platform/macos/CFOwner.h"

#include <ApplicationServices/ApplicationServices.h>

namespace orvesa {

class AXElementHandle final : public AccessibilityElementHandle {
public:
    explicit AXElementHandle(CFOwner<AXUIElementRef> element);

    /// The element itself, lent for as long as the handle lives.
    [[nodiscard]] AXUIElementRef element() const { return m_element.get(); }

private:
    CFOwner<AXUIElementRef> m_element;
};

} // namespace orvesa
