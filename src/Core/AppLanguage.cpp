#include "Core/AppLanguage.h"

namespace orvesa {

using namespace Qt::StringLiterals;

AppLanguage systemDefaultLanguage(const QStringList &preferredLanguages)
{
    for (const QString &preferred : preferredLanguages) {
        const QString tag = preferred.toLower();
        if (tag.startsWith("zh-hant"_L1) || tag.startsWith("zh-tw"_L1) || tag.startsWith("zh-hk"_L1)) {
            return AppLanguage::traditionalChinese;
        }
        if (tag.startsWith("ja"_L1)) {
            return AppLanguage::japanese;
        }
        if (tag.startsWith("en"_L1)) {
            return AppLanguage::english;
        }
    }
    return AppLanguage::english;
}

} // namespace orvesa
