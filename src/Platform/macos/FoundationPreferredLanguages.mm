#include "Platform/macos/FoundationPreferredLanguages.h"

#import <Foundation/Foundation.h>

namespace orvesa {

QStringList FoundationPreferredLanguages::preferredLanguages() const
{
    QStringList languages;
    for (NSString *language in NSLocale.preferredLanguages) {
        languages.append(QString::fromNSString(language));
    }
    return languages;
}

} // namespace orvesa
