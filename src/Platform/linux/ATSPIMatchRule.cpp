#include "Platform/linux/ATSPIMatchRule.h"

#include <QMap>
#include <QStringList>

namespace orvesa {

namespace {

constexpr int matchAll = 1;
constexpr int wordBits = 32;

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const ATSPIMatchRule &rule)
{
    const quint64 bits = quint64{1} << static_cast<int>(rule.state);
    const QList<int> states{static_cast<int>(bits & 0xffffffffU), static_cast<int>(bits >> wordBits)};
    argument.beginStructure();
    argument << states << matchAll;
    argument << QMap<QString, QString>() << matchAll; // attributes
    argument << QList<int>() << matchAll;             // roles
    argument << QStringList() << matchAll;            // interfaces
    argument << false;                                // not inverted
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ATSPIMatchRule &rule)
{
    Q_UNUSED(rule)
    return argument;
}

} // namespace orvesa
