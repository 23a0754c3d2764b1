#include "Models/TargetLanguage.h"

#include "Core/Localization.h"

namespace orvesa {

L10nKey displayTextKey(TargetLanguage language)
{
    switch (language) {
    case TargetLanguage::traditionalChinese:
        return L10nKey::langTraditionalChinese;
    case TargetLanguage::japanese:
        return L10nKey::langJapanese;
    case TargetLanguage::english:
        break;
    }
    return L10nKey::langEnglish;
}

QString displayText(TargetLanguage language)
{
    return Localization::string(displayTextKey(language));
}

} // namespace orvesa
