#include "App/Settings/SettingsSection.h"

using namespace Qt::StringLiterals;

namespace orvesa {

namespace {

/// The sections' keys follow each other in the sections' order.
L10nKey following(L10nKey first, SettingsSection section)
{
    return static_cast<L10nKey>(static_cast<int>(first) + static_cast<int>(section));
}

} // namespace

L10nKey titleKey(SettingsSection section)
{
    return following(L10nKey::sectionGeneral, section);
}

L10nKey subtitleKey(SettingsSection section)
{
    return following(L10nKey::sectionGeneralSubtitle, section);
}

QString symbolName(SettingsSection section)
{
    switch (section) {
    case SettingsSection::general:
        return u"gearshape.fill"_s;
    case SettingsSection::shortcuts:
        return u"command"_s;
    case SettingsSection::prompts:
        return u"quote.bubble.fill"_s;
    case SettingsSection::providers:
        break;
    }
    return u"key.fill"_s;
}

SRGBGradient iconGradient(SettingsSection section)
{
    switch (section) {
    case SettingsSection::general:
        return {{0.55, 0.6, 0.7}, {0.35, 0.4, 0.52}};
    case SettingsSection::shortcuts:
        return {{0.45, 0.55, 1.0}, {0.3, 0.35, 0.95}};
    case SettingsSection::prompts:
        return {{0.35, 0.8, 0.6}, {0.15, 0.55, 0.45}};
    case SettingsSection::providers:
        break;
    }
    return {{1.0, 0.62, 0.3}, {0.95, 0.42, 0.25}};
}

} // namespace orvesa
