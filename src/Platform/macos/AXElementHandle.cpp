#include "Platform/macos/AXElementHandle.h"

#include <utility>

namespace orvesa {

AXElementHandle::AXElementHandle(CFOwner<AXUIElementRef> element) : m_element(std::move(element)) {}

} // namespace orvesa
