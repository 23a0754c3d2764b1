#include "Core/HotKeyError.h"

namespace orvesa {

using namespace Qt::StringLiterals;

HotKeyError::HotKeyError(Kind kind, qint32 status) : m_kind(kind), m_status(status) {}

QString HotKeyError::errorDescription() const
{
    const QString what = m_kind == Kind::installFailed ? u"Failed to install hotkey event handler"_s
                                                       : u"Failed to register global hotkey"_s;
    return what + u" (status: "_s + QString::number(m_status) + u')';
}

} // namespace orvesa
