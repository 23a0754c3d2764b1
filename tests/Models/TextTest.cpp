#include "Models/Text.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

QString trimmed(const QString &text)
{
    return trimmedWhitespaceAndNewlines(text).toString();
}

TEST(TrimmedText, losesBlanksAndLineBreaksAtBothEndsOnly)
{
    EXPECT_EQ(trimmed(u" \t\r\n a  b\nc \n\n"_s), u"a  b\nc"_s);
    EXPECT_EQ(trimmed(u"word"_s), u"word"_s);
    EXPECT_EQ(trimmed(QString()), QString());
    EXPECT_EQ(trimmed(u" \n\t "_s), QString());
}

TEST(TrimmedText, countsEveryCharacterOfCategoryZAsBlank)
{
    for (const char16_t blank : {u'\u0020', u'\u00A0', u'\u1680', u'\u2000', u'\u2003', u'\u200A', u'\u2028', u'\u2029',
                                 u'\u202F', u'\u205F', u'\u3000'}) {
        EXPECT_EQ(trimmed(QChar(blank) + u"x"_s + QChar(blank)), u"x"_s) << std::hex << static_cast<int>(blank);
    }
}

TEST(TrimmedText, countsTheControlsFromTabToReturnAndNextLineAsBlank)
{
    for (const char16_t blank : {u'\u0009', u'\u000A', u'\u000B', u'\u000C', u'\u000D', u'\u0085'}) {
        EXPECT_EQ(trimmed(QChar(blank) + u"x"_s + QChar(blank)), u"x"_s) << std::hex << static_cast<int>(blank);
    }
}

TEST(TrimmedText, keepsWhatOnlyLooksLikeABlank)
{
    for (const char16_t other : {u'\u0008', u'\u000E', u'\u001C', u'\u001F', u'\u0084', u'\u180E', u'\u200B', u'\u200D',
                                 u'\u2060', u'\uFEFF', u'\u0000'}) {
        const QString text(1, QChar(other));
        EXPECT_EQ(trimmed(text), text) << std::hex << static_cast<int>(other);
    }
}

TEST(BlankText, isATextOfWhichNothingIsLeft)
{
    EXPECT_TRUE(isBlank(u""_s));
    EXPECT_TRUE(isBlank(u" \u3000\u2029\n"_s));
    EXPECT_FALSE(isBlank(u" . "_s));
    EXPECT_FALSE(isBlank(u"\u200B"_s));
}

TEST(PrintableText, hasNoControlCharacters)
{
    EXPECT_EQ(printable(u"a\x1b]0;b\a\u0085\u007f c\n"_s), u"a\uFFFD]0;b\uFFFD\uFFFD\uFFFD c\uFFFD"_s);
    EXPECT_EQ(printable(u"a\tb\nc\r"_s, u"\n\t"), u"a\tb\nc\uFFFD"_s);
    EXPECT_EQ(printable(u"한글 \u200D 😀"_s), u"한글 \u200D 😀"_s);
}

TEST(CharacterCount, isZeroForNothingAndOnePerOrdinaryLetter)
{
    EXPECT_EQ(characterCount(u""), 0);
    EXPECT_EQ(characterCount(u"Hello"), 5);
    EXPECT_EQ(characterCount(u"繁體中文"), 4);
}

TEST(CharacterCount, takesALetterWithItsMarksAsOne)
{
    EXPECT_EQ(characterCount(u"e\u0301x"), 2);
    EXPECT_EQ(characterCount(u"か\u3099"), 1);
    EXPECT_EQ(characterCount(u"a\u0301\u0302\u0303\u0304"), 1);
    EXPECT_EQ(characterCount(u"\n\u0301"), 2);
}

TEST(CharacterCount, takesAnEmojiSequenceAsOne)
{
    EXPECT_EQ(characterCount(u"\U0001F600"), 1);
    EXPECT_EQ(characterCount(u"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"), 1);
    EXPECT_EQ(characterCount(u"\U0001F44D\U0001F3FD"), 1);
    EXPECT_EQ(characterCount(u"\u2764\uFE0F\u200D\U0001F525"), 1);
    EXPECT_EQ(characterCount(u"1\uFE0F\u20E3"), 1);
    EXPECT_EQ(characterCount(u"\U0001F3F4\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F"), 1);
    EXPECT_EQ(characterCount(u"\U0001F600\U0001F600"), 2);
    EXPECT_EQ(characterCount(u"a\u200D\U0001F525"), 2);
}

TEST(CharacterCount, pairsRegionalIndicatorsToFlags)
{
    EXPECT_EQ(characterCount(u"\U0001F1EF\U0001F1F5\U0001F1FA\U0001F1F8"), 2);
    EXPECT_EQ(characterCount(u"\U0001F1EF\U0001F1F5\U0001F1FA"), 2);
    EXPECT_EQ(characterCount(u"a\U0001F1EF\U0001F1F5b"), 3);
}

TEST(CharacterCount, takesAHangulSyllableAsOneHoweverItIsSpelled)
{
    EXPECT_EQ(characterCount(u"\uD55C"), 1);
    EXPECT_EQ(characterCount(u"\u1112\u1161\u11AB"), 1);
    EXPECT_EQ(characterCount(u"\uAC00\u11A8"), 1);
    EXPECT_EQ(characterCount(u"\u1112\u1161\u11AB\uAC00\u11A8"), 2);
}

TEST(CharacterCount, takesCarriageReturnWithLineFeedAsOne)
{
    EXPECT_EQ(characterCount(u"a\r\nb"), 3);
    EXPECT_EQ(characterCount(u"\n\r"), 2);
    EXPECT_EQ(characterCount(u"\r\n\r\n"), 2);
}

TEST(CharacterCount, followsTheSameRulesInIndicAndSouthEastAsianScripts)
{
    EXPECT_EQ(characterCount(u"\u0E01\u0E34\u0E19"), 2); // Thai letter with a vowel above, letter
    EXPECT_EQ(characterCount(u"\u0E01\u0E33"), 1);       // Thai letter with sara am
    EXPECT_EQ(characterCount(u"\u0E40\u0E01"), 2);       // Thai vowel written before its letter
    EXPECT_EQ(characterCount(u"\u0B95\u0BBF"), 1);       // Tamil ki
    EXPECT_EQ(characterCount(u"\u0B86\u0BC1"), 1);       // Tamil vowel with a sign
    EXPECT_EQ(characterCount(u"\u0B95\u0BBE"), 1);       // Tamil letter and a half that extends it
    EXPECT_EQ(characterCount(u"\u0BAE\uFE0F"), 1);
    EXPECT_EQ(characterCount(u"\u1780\u17D2\u1781"), 2); // Khmer letter with a coeng, letter
    EXPECT_EQ(characterCount(u"\u1000\u102C"), 2);       // Myanmar letter, sign that stands for itself
    EXPECT_EQ(characterCount(u"\u1000\u103C"), 1);       // Myanmar letter with a medial
    EXPECT_EQ(characterCount(u"\u0F40\u0F90"), 1);       // Tibetan letter with a subjoined one
    EXPECT_EQ(characterCount(u"\u0D4E\u0D15"), 1);       // Malayalam dot reph before its letter
    EXPECT_EQ(characterCount(u"\u0DC1\u0DCA\u200D\u0DBB\u0DD3"), 2);
}

TEST(CharacterCount, joinsConsonantsThatALinkerMakesOneConjunct)
{
    EXPECT_EQ(characterCount(u"\u0915\u094D\u0937"), 1);
    EXPECT_EQ(characterCount(u"\u0915\u094D\u200D\u0937\u093F"), 1);
    EXPECT_EQ(characterCount(u"\u0915\u093C\u094D\u0937"), 1);
    EXPECT_EQ(characterCount(u"\u0915\u0937"), 2);
    EXPECT_EQ(characterCount(u"\u0915\u094Da\u0937"), 3);
    EXPECT_EQ(characterCount(u"\u0915\u094D\u200C\u0937"), 2);
    EXPECT_EQ(characterCount(u"\u0905\u094D\u0937"), 2);
    EXPECT_EQ(characterCount(u"\u0B95\u0BCD\u0BB7"), 2);
}

TEST(CharacterCount, survivesHalvesOfSurrogatePairs)
{
    const char16_t broken[] = {u'a', 0xD83D, u'b', 0xDE00, 0xD83D};
    EXPECT_EQ(characterCount(QStringView(broken, 5)), 5);
}

} // namespace
} // namespace orvesa
