#include "Models/PolishMode.h"

#include "Core/Localization.h"

namespace orvesa {

L10nKey displayTextKey(PolishMode mode)
{
    switch (mode) {
    case PolishMode::businessJapanese:
        return L10nKey::polishBusinessJapanese;
    case PolishMode::naturalJapanese:
        return L10nKey::polishNaturalJapanese;
    case PolishMode::traditionalChinese:
        return L10nKey::polishTraditionalChinese;
    case PolishMode::concise:
        break;
    }
    return L10nKey::polishConcise;
}

QString displayText(PolishMode mode)
{
    return Localization::string(displayTextKey(mode));
}

} // namespace orvesa
