#include "Models/HotKeyAction.h"

namespace orvesa {

using namespace Qt::StringLiterals;

KeyCombo defaultCombo(HotKeyAction action)
{
    switch (action) {
    case HotKeyAction::translateSelection:
        return {2, CarbonModifier::option, u"D"_s};
    case HotKeyAction::polishSelection:
        return {1, CarbonModifier::option, u"S"_s};
    case HotKeyAction::ocrTranslate:
        break;
    }
    return {0, CarbonModifier::option, u"A"_s};
}

quint32 hotKeyIdentifier(HotKeyAction action)
{
    return static_cast<quint32>(action) + 1;
}

quint32 promptHotKeyIdentifier(std::size_t index)
{
    constexpr quint32 first = 1000;
    return first + static_cast<quint32>(index);
}

SRGBGradient iconGradient(HotKeyAction action)
{
    switch (action) {
    case HotKeyAction::translateSelection:
        return {{0.3, 0.65, 1.0}, {0.2, 0.45, 0.95}};
    case HotKeyAction::polishSelection:
        return {{0.85, 0.45, 1.0}, {0.6, 0.3, 0.95}};
    case HotKeyAction::ocrTranslate:
        break;
    }
    return {{0.2, 0.8, 0.75}, {0.1, 0.55, 0.6}};
}

L10nKey menuTitleKey(HotKeyAction action)
{
    switch (action) {
    case HotKeyAction::translateSelection:
        return L10nKey::menuTranslateSelection;
    case HotKeyAction::polishSelection:
        return L10nKey::menuPolishSelection;
    case HotKeyAction::ocrTranslate:
        break;
    }
    return L10nKey::menuOCRTranslate;
}

} // namespace orvesa
