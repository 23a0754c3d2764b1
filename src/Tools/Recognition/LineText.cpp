#include "Tools/Recognition/LineText.h"

#include "Tools/Recognition/GlyphPlaces.h"
#include "Tools/Recognition/Scripts.h"

#include <algorithm>
#include <cmath>

namespace orvesa {

using namespace Qt::StringLiterals;
using Scripts::isNarrow;
using Scripts::isWide;
using Scripts::isWidePunctuation;

namespace {

bool isWideCharacter(const SpacedGlyph &glyph)
{
    return isWide(glyph.text) && !isWidePunctuation(glyph.text);
}

const SpacedGlyph *at(const std::vector<SpacedGlyph> &glyphs, std::size_t index)
{
    return index < glyphs.size() ? &glyphs[index] : nullptr;
}

bool isWideAt(const std::vector<SpacedGlyph> &glyphs, std::size_t index)
{
    const SpacedGlyph *glyph = at(glyphs, index);
    return glyph != nullptr && isWide(glyph->text);
}

void replaceText(SpacedGlyph &glyph, QChar character)
{
    glyph.text = character;
}

/// What the engine takes a comma in the middle of its square for.
bool isSpeck(const SpacedGlyph &glyph)
{
    constexpr double mostWidth = 0.36;
    return glyph.text.size() == 1 && u"»›>'’‘°*`\""_s.contains(glyph.text[0]) && glyph.width <= mostWidth;
}

/// Sentence marks that follow a wide character are wide themselves, unless the room says otherwise.
void widenSentenceMarks(std::vector<SpacedGlyph> &glyphs)
{
    constexpr double besideWide = 0.24;
    const bool holdsWide = std::ranges::any_of(glyphs, isWideCharacter);
    for (std::size_t index = 0; index < glyphs.size(); ++index) {
        SpacedGlyph &glyph = glyphs[index];
        const bool afterWide = index > 0 && isWideAt(glyphs, index - 1);
        const bool beforeWide = isWideAt(glyphs, index + 1);
        // Chinese commas stand in the middle of their square; after a Latin word the engine takes them for anything
        // small.
        const bool isLoneSpeck =
            isSpeck(glyph) && index > 0 && !afterWide && glyph.gapBefore >= besideWide &&
            (beforeWide ? glyphs[index + 1].gapBefore >= besideWide : index + 1 == glyphs.size() && holdsWide);
        if (isLoneSpeck || (glyph.text == ","_L1 && (afterWide || beforeWide))) {
            replaceText(glyph, u'，');
        } else if (glyph.text == "!"_L1 && afterWide) {
            replaceText(glyph, u'！');
        } else if (glyph.text == "?"_L1 && afterWide) {
            replaceText(glyph, u'？');
        } else if ((glyph.text == ":"_L1 || glyph.text == ";"_L1) && (afterWide || beforeWide) &&
                   glyph.gapBefore >= besideWide) {
            replaceText(glyph, glyph.text == ":"_L1 ? u'：' : u'；');
        } else if (afterWide &&
                   (glyph.text == "."_L1 || glyph.text == "o"_L1 || glyph.text == "©"_L1 || glyph.text == "°"_L1 ||
                    glyph.text == "｡"_L1) &&
                   (beforeWide || index + 1 == glyphs.size())) {
            replaceText(glyph, u'。');
        }
    }
}

/// A wide parenthesis fills half of its square with nothing, on the outside.
void widenParentheses(std::vector<SpacedGlyph> &glyphs)
{
    constexpr double emptyHalf = 0.48;
    constexpr auto none = static_cast<std::size_t>(-1);
    std::size_t open = none;
    for (std::size_t index = 0; index < glyphs.size(); ++index) {
        const QString &text = glyphs[index].text;
        if (text == "("_L1 || text == "（"_L1) {
            open = index;
        }
        if (text != ")"_L1 && text != "）"_L1) {
            continue;
        }
        const SpacedGlyph *next = at(glyphs, index + 1);
        const bool wideRoomAfter = next != nullptr && isWide(next->text) && next->gapBefore >= emptyHalf;
        if (open == none) {
            replaceText(glyphs[index], wideRoomAfter ? u'）' : u')');
            continue;
        }
        const bool afterWide = open > 0 && isWideAt(glyphs, open - 1);
        const bool holdsWide = isWideAt(glyphs, open + 1) || isWideAt(glyphs, index - 1);
        const bool wideRoomBefore = open > 0 && glyphs[open].gapBefore >= emptyHalf;
        // What begins with a wide character is set in wide marks; the room differs from font to font.
        constexpr double someRoom = 0.26;
        const bool beginsWide = index > open + 1 && isWideAt(glyphs, open + 1);
        const bool someRoomAround =
            (open == 0 || glyphs[open].gapBefore >= someRoom) && (next == nullptr || next->gapBefore >= someRoom);
        const bool wide = (beginsWide && afterWide && someRoomAround) || (afterWide && wideRoomBefore) ||
                          (wideRoomAfter && (afterWide || holdsWide)) || (open == 0 && holdsWide);
        replaceText(glyphs[open], wide ? u'（' : u'(');
        replaceText(glyphs[index], wide ? u'）' : u')');
        open = none;
    }
}

/// Digits that stand as far apart as ideographs are the wide forms.
void widenDigits(std::vector<SpacedGlyph> &glyphs)
{
    constexpr double leastAdvance = 0.85;
    constexpr double mostAdvance = 1.3;
    constexpr char16_t wideOffset = 0xFEE0;
    const auto isDigit = [](const SpacedGlyph &glyph) {
        return glyph.text.size() == 1 && isNarrow(glyph.text) && glyph.text[0].isDigit();
    };
    for (std::size_t first = 0; first < glyphs.size(); ++first) {
        if (!isDigit(glyphs[first])) {
            continue;
        }
        std::size_t last = first;
        while (last + 1 < glyphs.size() && isDigit(glyphs[last + 1]) && glyphs[last + 1].advance >= leastAdvance &&
               glyphs[last + 1].advance <= mostAdvance) {
            ++last;
        }
        const bool besideWide = (first > 0 && isWideAt(glyphs, first - 1)) || isWideAt(glyphs, last + 1);
        const bool isWholeNumber = last + 1 == glyphs.size() || !isDigit(glyphs[last + 1]);
        if (last > first && besideWide && isWholeNumber) {
            for (std::size_t index = first; index <= last; ++index) {
                replaceText(glyphs[index], QChar(static_cast<char16_t>(glyphs[index].text[0].unicode() + wideOffset)));
            }
        }
        first = last;
    }
}

double usualGap(const std::vector<SpacedGlyph> &glyphs)
{
    std::vector<double> gaps;
    for (std::size_t index = 1; index < glyphs.size(); ++index) {
        if (isWideCharacter(glyphs[index - 1]) && isWideCharacter(glyphs[index])) {
            gaps.push_back(glyphs[index].gapBefore);
        }
    }
    if (gaps.empty()) {
        return 0.1;
    }
    const auto middle = gaps.begin() + static_cast<std::ptrdiff_t>(gaps.size() / 2);
    std::nth_element(gaps.begin(), middle, gaps.end());
    return *middle;
}

bool hasBlankBefore(const std::vector<SpacedGlyph> &glyphs, std::size_t index, double usual)
{
    const SpacedGlyph &before = glyphs[index - 1];
    const SpacedGlyph &glyph = glyphs[index];
    if (isWidePunctuation(before.text) || isWidePunctuation(glyph.text)) {
        constexpr double beyondAnySquare = 0.95;
        return glyph.gapBefore >= beyondAnySquare;
    }
    if (isWideCharacter(before) && isWideCharacter(glyph)) {
        // Kana and digits do not fill their squares; two ideographs nearly do.
        const bool full = Scripts::isIdeograph(before.text) && Scripts::isIdeograph(glyph.text);
        const double leastBlank = full ? 0.36 : 0.62;
        return glyph.gapBefore >= std::max(leastBlank, usual + 0.2);
    }
    if (isWideCharacter(before) || isWideCharacter(glyph)) {
        // The digit one has the width of the others, and room of its own on both sides.
        constexpr double leastBlank = 0.2;
        constexpr double usualWidth = 0.45;
        const SpacedGlyph &narrow = isWideCharacter(before) ? glyph : before;
        const double thin =
            narrow.text == "1"_L1 && narrow.width > 0 ? std::max(0.0, (usualWidth - narrow.width) / 2) : 0;
        return glyph.gapBefore >= leastBlank + thin;
    }
    return glyph.beginsWord;
}

/// From ideograph to ideograph is exactly one square; the height alone says too little where most is Latin.
double squareSide(const ReadLine &line, const std::vector<Span> &places, double text)
{
    std::vector<double> sides;
    for (std::size_t index = 1; index < places.size(); ++index) {
        if (Scripts::isIdeograph(line.glyphs[index - 1].text) && Scripts::isIdeograph(line.glyphs[index].text)) {
            sides.push_back(
                (places[index].begin + places[index].end - places[index - 1].begin - places[index - 1].end) / 2.0);
        }
    }
    if (sides.empty()) {
        return text;
    }
    const auto middle = sides.begin() + static_cast<std::ptrdiff_t>(sides.size() / 2);
    std::nth_element(sides.begin(), middle, sides.end());
    constexpr double squareToHeight = 0.95; // of the ink in it
    constexpr double mostApart = 1.8;
    return std::clamp(*middle * squareToHeight, text, mostApart * text);
}

} // namespace

std::vector<SpacedGlyph> spaced(const ReadLine &line, const GrayImage &image, double text)
{
    const std::vector<Span> places = glyphPlaces(line, image, text);
    text = squareSide(line, places, text);
    std::vector<SpacedGlyph> glyphs;
    glyphs.reserve(line.glyphs.size());
    for (std::size_t index = 0; index < line.glyphs.size(); ++index) {
        const Glyph &glyph = line.glyphs[index];
        SpacedGlyph result{glyph.text,
                           glyph.beginsWord,
                           0,
                           0,
                           places[index].length() / text,
                           glyph.confidence,
                           (places[index].begin + places[index].end + 1) / 2.0};
        if (index > 0) {
            const Span &before = places[index - 1];
            const Span &own = places[index];
            result.gapBefore = std::max(0, own.begin - before.end - 1) / text;
            result.advance = (own.begin + own.end - before.begin - before.end) / (2 * text);
        }
        glyphs.push_back(std::move(result));
    }
    return glyphs;
}

QString lineText(std::vector<SpacedGlyph> glyphs)
{
    widenSentenceMarks(glyphs);
    widenParentheses(glyphs);
    widenDigits(glyphs);
    const double usual = usualGap(glyphs);
    QString text;
    for (std::size_t index = 0; index < glyphs.size(); ++index) {
        if (index > 0 && hasBlankBefore(glyphs, index, usual)) {
            text += u' ';
        }
        text += glyphs[index].text;
    }
    return text;
}

} // namespace orvesa
