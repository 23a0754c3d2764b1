#pragma once

// One entry of an application's list of accessibles (org.a11y.atspi.Cache.GetItems). Value type, any thread.

#include "Platform/linux/ATSPIClient.h"

namespace orvesa {

struct ATSPICacheItem {
    /// What an application's list must look like; toolkits with another form answer with an empty list.
    static constexpr auto listSignature = "a((so)(so)(so)iiassusau)";

    ATSPIReference element;
    ATSPIReference parent;
    bool hasText = false;
    ATSPIStateSet states;
};

const QDBusArgument &operator>>(const QDBusArgument &argument, ATSPICacheItem &item);

} // namespace orvesa
