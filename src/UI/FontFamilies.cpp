#include "UI/FontFamilies.h"

#include <QFontDatabase>
#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvesa::FontFamilies {

namespace {

/// The families that the desktops come with, the one made for screens first.
QStringList usualFamilies(TextLanguage language)
{
    switch (language) {
    case TextLanguage::traditionalChinese:
        return {u"Noto Sans CJK TC"_s, u"Noto Sans TC"_s,      u"Source Han Sans TC"_s,  u"Source Han Sans TW"_s,
                u"PingFang TC"_s,      u"WenQuanYi Zen Hei"_s, u"WenQuanYi Micro Hei"_s, u"AR PL UMing TW"_s};
    case TextLanguage::simplifiedChinese:
        return {u"Noto Sans CJK SC"_s, u"Noto Sans SC"_s,        u"Source Han Sans SC"_s, u"Source Han Sans CN"_s,
                u"PingFang SC"_s,      u"WenQuanYi Micro Hei"_s, u"AR PL UMing CN"_s};
    case TextLanguage::japanese:
        return {u"Noto Sans CJK JP"_s, u"Noto Sans JP"_s, u"Source Han Sans JP"_s, u"Source Han Sans"_s,
                u"Hiragino Sans"_s,    u"IPAexGothic"_s,  u"IPAGothic"_s,          u"VL Gothic"_s};
    case TextLanguage::korean:
        return {u"Noto Sans CJK KR"_s,   u"Noto Sans KR"_s, u"Source Han Sans K"_s,
                u"Source Han Sans KR"_s, u"NanumGothic"_s,  u"Apple SD Gothic Neo"_s};
    case TextLanguage::other:
        break;
    }
    return {};
}

QString firstInstalled(const QStringList &families)
{
    const auto found = std::ranges::find_if(families, &QFontDatabase::hasFamily);
    return found == families.end() ? QString() : *found;
}

/// Looked for once: it walks the list of installed fonts.
const QString &familyFor(TextLanguage language)
{
    static QHash<int, QString> found;
    const int key = static_cast<int>(language);
    const auto known = found.constFind(key);
    return known != found.constEnd() ? *known : *found.insert(key, firstInstalled(usualFamilies(language)));
}

const QString &emojiFamily()
{
    static const QString family = [] {
        const QString installed = firstInstalled(
            {u"Noto Color Emoji"_s, u"Twemoji"_s, u"Twitter Color Emoji"_s, u"JoyPixels"_s, u"Apple Color Emoji"_s});
        return installed.isEmpty() ? u"emoji"_s : installed;
    }();
    return family;
}

} // namespace

QStringList forInterface(const QString &desktopFamily, TextLanguage language)
{
    const QString own = language == desktopLanguage() ? QString() : familyFor(language);
    if (own.isEmpty() || own == desktopFamily) {
        return {desktopFamily};
    }
    // First, since Qt 6.4 keeps one list of further families for all fonts that begin with the same one, and since a
    // desktop's font may have these characters in another language's shapes.
    return {own, desktopFamily};
}

QStringList forContent(const QString &desktopFamily, TextLanguage language)
{
    return forInterface(desktopFamily, language) << emojiFamily();
}

} // namespace orvesa::FontFamilies
