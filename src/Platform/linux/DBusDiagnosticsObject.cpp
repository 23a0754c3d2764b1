#include "Platform/linux/DBusDiagnosticsObject.h"

#include <utility>

namespace orvesa {

DBusDiagnosticsObject::DBusDiagnosticsObject(std::function<QList<quint32>()> heldShortcuts)
    : m_heldShortcuts(std::move(heldShortcuts))
{
}

QList<uint> DBusDiagnosticsObject::HeldShortcuts() const
{
    return m_heldShortcuts ? m_heldShortcuts() : QList<quint32>();
}

} // namespace orvesa
