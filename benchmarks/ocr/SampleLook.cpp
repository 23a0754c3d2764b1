#include "ocr/SampleLook.h"

#include "ocr/SampleRenderer.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

bool isMonospaced(const SampleText &text)
{
    return text.kind == "code"_L1 || text.kind == "term"_L1;
}

QStringList familiesFor(const SampleText &text)
{
    if (isMonospaced(text)) {
        return {u"DejaVu Sans Mono"_s, u"Liberation Mono"_s, u"Hack"_s};
    }
    if (text.language.endsWith("ja"_L1)) {
        return {u"Noto Sans CJK JP"_s, u"IPAGothic"_s, u"VL Gothic"_s, u"Noto Serif CJK JP"_s, u"IPAPMincho"_s};
    }
    if (text.language.endsWith("zh"_L1)) {
        return {u"Noto Sans CJK TC"_s, u"WenQuanYi Micro Hei"_s, u"Noto Serif CJK TC"_s, u"AR PL UMing TW"_s,
                u"AR PL UKai TW"_s};
    }
    return {u"DejaVu Sans"_s, u"Liberation Sans"_s,  u"Noto Serif"_s,
            u"Open Sans"_s,   u"Liberation Serif"_s, u"Cantarell"_s};
}

QStringList moreFamiliesFor(const SampleText &text)
{
    QStringList families = familiesFor(text);
    if (isMonospaced(text)) {
        families += {u"Noto Sans Mono"_s, u"Nimbus Mono PS"_s, u"FreeMono"_s};
    } else if (text.language.endsWith("ja"_L1)) {
        families += {u"VL PGothic"_s, u"IPAPGothic"_s, u"IPAMincho"_s, u"Noto Sans Mono CJK JP"_s};
    } else if (text.language.endsWith("zh"_L1)) {
        families += {u"Noto Sans Mono CJK TC"_s, u"WenQuanYi Micro Hei Mono"_s};
    } else {
        families += {u"Noto Sans"_s, u"Roboto"_s,           u"Nimbus Sans"_s, u"DejaVu Serif"_s, u"Nimbus Roman"_s,
                     u"FreeSans"_s,  u"DejaVu Sans Mono"_s, u"URW Bookman"_s, u"P052"_s,         u"URW Gothic"_s};
    }
    return families;
}

struct Colors {
    QRgb paper, ink, accent;
};

} // namespace

SampleLook orderedLook(const SampleText &text, int variant)
{
    static constexpr std::array sizes{14, 12, 16, 13, 18, 15, 11, 20};
    static constexpr std::array scales{1.0, 2.0, 1.0, 1.5};
    static constexpr std::array<Colors, 6> colors{{{0xffffff, 0x1c1c1e, 0x3478f6},
                                                   {0x1e1f26, 0xe6e6ec, 0x7b72f7},
                                                   {0xf4f1ea, 0x3a322a, 0xb5512c},
                                                   {0x0b2545, 0xdfe8f5, 0x2a9d8f},
                                                   {0xe9ecef, 0x6c757d, 0x198754},
                                                   {0x2b2b2b, 0x9a9a9a, 0xd97706}}};
    const QStringList families = familiesFor(text);
    const auto pick = [variant](std::size_t count, int factor) {
        return static_cast<std::size_t>(variant * factor + variant / 3) % count;
    };
    SampleLook look;
    look.scale = text.kind == "vertical"_L1 ? 1.0 : scales[pick(scales.size(), 1)];
    int pixels = sizes[pick(sizes.size(), 3)];
    const bool isWide = !text.language.startsWith("en"_L1);
    pixels = std::max(pixels, isWide ? 12 : 11);
    if (text.kind == "vertical"_L1 || text.kind == "photo"_L1) {
        pixels += 8;
    }
    const int dense = static_cast<int>(std::lround(pixels * look.scale));
    look.font = QFont(families.at(static_cast<qsizetype>(pick(static_cast<std::size_t>(families.size()), 2))));
    look.font.setPixelSize(dense);
    look.font.setHintingPreference(variant % 2 == 0 ? QFont::PreferFullHinting : QFont::PreferNoHinting);
    if (variant % 11 == 7 && look.scale < 1.1 && dense >= 12) {
        look.font.setStyleStrategy(QFont::NoAntialias);
    }
    const Colors &chosen = colors[pick(colors.size(), 5)];
    look.paper = QColor::fromRgb(chosen.paper);
    look.ink = QColor::fromRgb(chosen.ink);
    look.accent = QColor::fromRgb(chosen.accent);
    return look;
}

SampleLook randomLook(const SampleText &text, quint32 seed)
{
    static constexpr std::array<Colors, 12> colors{{{0xffffff, 0x000000, 0x1a73e8},
                                                    {0xffffff, 0x333333, 0xd93025},
                                                    {0xf6f8fa, 0x24292f, 0x0969da},
                                                    {0xf0f0f0, 0x1a1a1a, 0x3daee9},
                                                    {0xfdf6e3, 0x586e75, 0x268bd2},
                                                    {0xffffff, 0x777777, 0x188038},
                                                    {0x0d1117, 0xc9d1d9, 0x238636},
                                                    {0x1e1e1e, 0xd4d4d4, 0x0e639c},
                                                    {0x300a24, 0xeeeeec, 0xe95420},
                                                    {0x002b36, 0x93a1a1, 0x859900},
                                                    {0x36393f, 0xdcddde, 0x5865f2},
                                                    {0x1b5e20, 0xffffff, 0x004d40}}};
    QRandomGenerator random(seed);
    const auto pick = [&random](std::size_t count) {
        return static_cast<std::size_t>(random.bounded(static_cast<quint32>(count)));
    };
    SampleLook look;
    static constexpr std::array scales{1.0, 1.0, 1.0, 1.25, 1.5, 2.0};
    look.scale = scales[pick(scales.size())];
    const bool isLarge = text.kind == "vertical"_L1 || text.kind == "photo"_L1;
    const bool isWide = !text.language.startsWith("en"_L1);
    const int pixels = random.bounded(isWide ? 13 : 12, isLarge ? 27 : 20) + (isLarge ? 4 : 0);
    const QStringList families = moreFamiliesFor(text);
    look.font = QFont(families.at(static_cast<qsizetype>(pick(static_cast<std::size_t>(families.size())))));
    look.font.setPixelSize(static_cast<int>(std::lround(pixels * look.scale)));
    look.font.setHintingPreference(pick(2) == 0 ? QFont::PreferFullHinting : QFont::PreferNoHinting);
    look.font.setWeight(pick(5) == 0 ? QFont::Bold : QFont::Normal);
    if (look.scale < 1.3 && pick(3) == 0) {
        look.smoothing = SampleLook::Smoothing::subpixel;
        look.font.setHintingPreference(QFont::PreferNoHinting);
    }
    const Colors &chosen = colors[pick(colors.size())];
    look.paper = QColor::fromRgb(chosen.paper);
    look.ink = QColor::fromRgb(chosen.ink);
    look.accent = QColor::fromRgb(chosen.accent);
    return look;
}

} // namespace orvesa::benchmark
