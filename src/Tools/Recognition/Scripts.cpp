#include "Tools/Recognition/Scripts.h"

namespace orvesa::Scripts {

using namespace Qt::StringLiterals;

namespace {

char32_t codePoint(QStringView character)
{
    if (character.isEmpty()) {
        return 0;
    }
    if (character.size() > 1 && character[0].isHighSurrogate() && character[1].isLowSurrogate()) {
        return QChar::surrogateToUcs4(character[0], character[1]);
    }
    return character[0].unicode();
}

bool isBetween(char32_t value, char32_t first, char32_t last)
{
    return value >= first && value <= last;
}

} // namespace

bool isKatakana(QChar character)
{
    return isBetween(character.unicode(), 0x30A1, 0x30FA);
}

bool isHiragana(QChar character)
{
    return isBetween(character.unicode(), 0x3041, 0x309F);
}

bool isKana(QChar character)
{
    return isKatakana(character) || isHiragana(character) || character == u'ー';
}

bool isIdeograph(QStringView character)
{
    const char32_t value = codePoint(character);
    return isBetween(value, 0x4E00, 0x9FFF) || isBetween(value, 0x3400, 0x4DBF) || isBetween(value, 0xF900, 0xFAFF) ||
           isBetween(value, 0x20000, 0x3FFFF) || value == 0x3005 || value == 0x3007;
}

bool isWide(QStringView character)
{
    const char32_t value = codePoint(character);
    return isIdeograph(character) || isBetween(value, 0x3000, 0x30FF) || isBetween(value, 0xFF00, 0xFF60) ||
           isBetween(value, 0x2E80, 0x2FDF);
}

bool isWidePunctuation(QStringView character)
{
    return character.size() == 1 && u"、。，．・：；？！（）「」『』【】〔〕〈〉《》〜～　"_s.contains(character[0]);
}

bool isNarrow(QStringView character)
{
    return isBetween(codePoint(character), 0x21, 0x7E);
}

} // namespace orvesa::Scripts
