#include "Models/AppTheme.h"

#include "Core/Localization.h"

namespace orvesa {

SRGBGradient brandGradient(AppTheme theme)
{
    switch (theme) {
    case AppTheme::violet:
        break;
    case AppTheme::ocean:
        return {{0.25, 0.65, 1.0}, {0.1, 0.4, 0.9}};
    case AppTheme::forest:
        return {{0.3, 0.85, 0.55}, {0.1, 0.55, 0.35}};
    case AppTheme::sunset:
        return {{1.0, 0.6, 0.3}, {0.95, 0.3, 0.35}};
    case AppTheme::graphite:
        return {{0.6, 0.63, 0.7}, {0.35, 0.38, 0.45}};
    }
    return {{0.65, 0.45, 1.0}, {0.35, 0.5, 1.0}};
}

SRGBGradient sidebarGradient(AppTheme theme)
{
    switch (theme) {
    case AppTheme::violet:
        break;
    case AppTheme::ocean:
        return {{0.08, 0.24, 0.45}, {0.04, 0.12, 0.28}};
    case AppTheme::forest:
        return {{0.09, 0.33, 0.22}, {0.04, 0.17, 0.12}};
    case AppTheme::sunset:
        return {{0.48, 0.2, 0.13}, {0.26, 0.1, 0.11}};
    case AppTheme::graphite:
        return {{0.23, 0.24, 0.27}, {0.11, 0.12, 0.14}};
    }
    return {{0.24, 0.16, 0.5}, {0.13, 0.1, 0.32}};
}

SRGBColor accent(AppTheme theme)
{
    return brandGradient(theme).end;
}

L10nKey displayTextKey(AppTheme theme)
{
    switch (theme) {
    case AppTheme::violet:
        break;
    case AppTheme::ocean:
        return L10nKey::themeOcean;
    case AppTheme::forest:
        return L10nKey::themeForest;
    case AppTheme::sunset:
        return L10nKey::themeSunset;
    case AppTheme::graphite:
        return L10nKey::themeGraphite;
    }
    return L10nKey::themeViolet;
}

QString displayText(AppTheme theme)
{
    return Localization::string(displayTextKey(theme));
}

} // namespace orvesa
