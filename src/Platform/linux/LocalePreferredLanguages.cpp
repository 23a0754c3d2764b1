#include "Platform/linux/LocalePreferredLanguages.h"

#include <QLocale>

namespace orvesa {

QStringList LocalePreferredLanguages::preferredLanguages() const
{
    return QLocale::system().uiLanguages();
}

} // namespace orvesa
