#pragma once

// A question to an application's own search for elements (org.a11y.atspi.Collection). Value type, any thread.

#include "Platform/linux/ATSPIClient.h"

#include <QMetaType>

namespace orvesa {

/// Matches every element with the state.
struct ATSPIMatchRule {
    ATSPIState state = ATSPIState::focused;
};

QDBusArgument &operator<<(QDBusArgument &argument, const ATSPIMatchRule &rule);
/// Rules are only ever sent; the message library asks for both directions.
const QDBusArgument &operator>>(const QDBusArgument &argument, ATSPIMatchRule &rule);

} // namespace orvesa

Q_DECLARE_METATYPE(orvesa::ATSPIMatchRule)
