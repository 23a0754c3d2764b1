#include "Models/GraphemeClusters.h"

#include <QString>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <span>

namespace orvesa {

namespace {

// Qt's boundary finder follows the standard's rules, except in the Indic and South-East Asian scripts: there it puts
// syllable rules of its own over them (and over Thai those of a library that may or may not be installed), which break
// between a letter and its mark and join what is apart. So each character of those scripts is replaced, for counting
// only, by one of a script without such rules that behaves the same at a boundary.

enum class Boundary { ordinary, extend, spacingMark, prepend };

struct Range {
    char32_t first;
    char32_t last;
};

bool contains(std::span<const Range> ranges, char32_t scalar)
{
    return std::ranges::any_of(ranges,
                               [scalar](const Range &range) { return range.first <= scalar && scalar <= range.last; });
}

bool hasSyllableRules(char32_t scalar)
{
    switch (QChar::script(scalar)) {
    case QChar::Script_Devanagari:
    case QChar::Script_Bengali:
    case QChar::Script_Gurmukhi:
    case QChar::Script_Gujarati:
    case QChar::Script_Oriya:
    case QChar::Script_Tamil:
    case QChar::Script_Telugu:
    case QChar::Script_Kannada:
    case QChar::Script_Malayalam:
    case QChar::Script_Sinhala:
    case QChar::Script_Thai:
    case QChar::Script_Tibetan:
    case QChar::Script_Myanmar:
    case QChar::Script_Khmer:
        return true;
    default:
        return false;
    }
}

/// Spacing marks that extend the letter before them, because they are one half of a letter that was taken apart.
constexpr std::array<Range, 12> extendingSpacingMarks{{
    {0x09BE, 0x09BE},
    {0x09D7, 0x09D7},
    {0x0B3E, 0x0B3E},
    {0x0B57, 0x0B57},
    {0x0BBE, 0x0BBE},
    {0x0BD7, 0x0BD7},
    {0x0CC2, 0x0CC2},
    {0x0CD5, 0x0CD6},
    {0x0D3E, 0x0D3E},
    {0x0D57, 0x0D57},
    {0x0DCF, 0x0DCF},
    {0x0DDF, 0x0DDF},
}};

/// Spacing marks, all of Myanmar, that stand for themselves.
constexpr std::array<Range, 10> ordinarySpacingMarks{{
    {0x102B, 0x102C},
    {0x1038, 0x1038},
    {0x1062, 0x1064},
    {0x1067, 0x106D},
    {0x1083, 0x1083},
    {0x1087, 0x108C},
    {0x108F, 0x108F},
    {0x109A, 0x109C},
    {0xAA7B, 0xAA7B},
    {0xAA7D, 0xAA7D},
}};

constexpr char32_t thaiSaraAm = 0x0E33;
constexpr char32_t malayalamDotReph = 0x0D4E;

Boundary boundary(char32_t scalar)
{
    switch (QChar::category(scalar)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return Boundary::extend;
    case QChar::Mark_SpacingCombining:
        if (contains(extendingSpacingMarks, scalar)) {
            return Boundary::extend;
        }
        return contains(ordinarySpacingMarks, scalar) ? Boundary::ordinary : Boundary::spacingMark;
    default:
        if (scalar == thaiSaraAm) {
            return Boundary::spacingMark;
        }
        return scalar == malayalamDotReph ? Boundary::prepend : Boundary::ordinary;
    }
}

QChar standIn(Boundary boundary)
{
    switch (boundary) {
    case Boundary::extend:
        return u'\u0301'; // combining acute accent
    case Boundary::spacingMark:
        return u'\u1B04'; // Balinese sign bisah
    case Boundary::prepend:
        return u'\u0600'; // Arabic number sign
    case Boundary::ordinary:
        break;
    }
    return u'x';
}

/// Consonants that a linker joins with the next one into a conjunct (Indic_Conjunct_Break=Consonant).
constexpr std::array<Range, 26> linkedConsonants{{
    {0x0915, 0x0939}, {0x0958, 0x095F}, {0x0978, 0x097F}, {0x0995, 0x09A8}, {0x09AA, 0x09B0}, {0x09B2, 0x09B2},
    {0x09B6, 0x09B9}, {0x09DC, 0x09DD}, {0x09DF, 0x09DF}, {0x09F0, 0x09F1}, {0x0A95, 0x0AA8}, {0x0AAA, 0x0AB0},
    {0x0AB2, 0x0AB3}, {0x0AB5, 0x0AB9}, {0x0AF9, 0x0AF9}, {0x0B15, 0x0B28}, {0x0B2A, 0x0B30}, {0x0B32, 0x0B33},
    {0x0B35, 0x0B39}, {0x0B5C, 0x0B5D}, {0x0B5F, 0x0B5F}, {0x0B71, 0x0B71}, {0x0C15, 0x0C28}, {0x0C2A, 0x0C39},
    {0x0C58, 0x0C5A}, {0x0D15, 0x0D3A},
}};

bool isLinkedConsonant(char32_t scalar)
{
    // Most texts hold none, so the bounds are asked before the ranges.
    return scalar >= linkedConsonants.front().first && scalar <= linkedConsonants.back().last &&
           contains(linkedConsonants, scalar);
}

constexpr std::array<char32_t, 6> linkers{0x094D, 0x09CD, 0x0ACD, 0x0B4D, 0x0C4D, 0x0D4D};

constexpr char32_t zeroWidthJoiner = 0x200D;

/// Follows a text and says where two consonants are one conjunct, a rule that the boundary finder does not know.
class ConjunctTracker final {
public:
    /// Whether the scalar joins the consonant before it.
    [[nodiscard]] bool joins(char32_t scalar)
    {
        if (isLinkedConsonant(scalar)) {
            const bool joined = m_state == State::linked;
            m_state = State::consonant;
            return joined;
        }
        if (m_state != State::none) {
            if (std::ranges::find(linkers, scalar) != linkers.end()) {
                m_state = State::linked;
            } else if (scalar != zeroWidthJoiner && QChar::combiningClass(scalar) == 0) {
                m_state = State::none;
            }
        }
        return false;
    }

private:
    enum class State { none, consonant, linked };

    State m_state = State::none;
};

struct Scalar {
    char32_t value;
    qsizetype units; ///< UTF-16 code units
};

Scalar scalarAt(QStringView text, qsizetype index)
{
    const QChar first = text.at(index);
    if (first.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate()) {
        return {QChar::surrogateToUcs4(first, text.at(index + 1)), 2};
    }
    return {first.unicode(), 1};
}

QString withoutSyllableRules(QStringView text)
{
    QString plain;
    plain.reserve(text.size());
    ConjunctTracker conjuncts;
    for (qsizetype index = 0; index < text.size();) {
        const Scalar scalar = scalarAt(text, index);
        const bool joins = conjuncts.joins(scalar.value);
        if (hasSyllableRules(scalar.value)) {
            plain += standIn(joins ? Boundary::extend : boundary(scalar.value));
        } else {
            plain += text.sliced(index, scalar.units);
        }
        index += scalar.units;
    }
    return plain;
}

} // namespace

qsizetype graphemeClusterCount(QStringView text)
{
    const QString plain = withoutSyllableRules(text);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, plain);
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0) {
        ++count;
    }
    return count;
}

} // namespace orvesa
