#include "Platform/linux/ATSPICacheItem.h"

#include <QStringList>

namespace orvesa {

using namespace Qt::StringLiterals;

const QDBusArgument &operator>>(const QDBusArgument &argument, ATSPICacheItem &item)
{
    ATSPIReference application;
    int index = 0;
    int childCount = 0;
    QStringList interfaces;
    QString name;
    quint32 role = 0;
    QString description;
    QList<quint32> states;
    argument.beginStructure();
    argument >> item.element >> application >> item.parent >> index >> childCount >> interfaces >> name >> role >>
        description >> states;
    argument.endStructure();
    item.hasText = interfaces.contains("org.a11y.atspi.Text"_L1);
    item.states = ATSPIStateSet(states);
    return argument;
}

} // namespace orvesa
