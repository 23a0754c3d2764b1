// Repairs that need no image.

#include "Tools/Recognition/Scripts.h"
#include "Tools/Recognition/TextCleanup.h"

#include <gtest/gtest.h>

namespace orvesa {

using namespace Qt::StringLiterals;

TEST(TextCleanup, SettlesTwinsByTheirNeighbours)
{
    EXPECT_EQ(cleaned(u"キ一ボード"_s), u"キーボード"_s);
    EXPECT_EQ(cleaned(u"プ口グラム"_s), u"プログラム"_s);
    EXPECT_EQ(cleaned(u"人ロ密度"_s), u"人口密度"_s);
    EXPECT_EQ(cleaned(u"フォルダーヘ置く"_s), u"フォルダーへ置く"_s);
    EXPECT_EQ(cleaned(u"へルプ"_s), u"ヘルプ"_s);
}

TEST(TextCleanup, LeavesWordsAlone)
{
    for (const QString &text : {u"一覧"_s, u"入口"_s, u"ヘルプ"_s, u"学校へ行く"_s, u"ページ一覧"_s, u"二人"_s,
                                u"力を入れる"_s, u"カメラ"_s, u"OBJECT"_s, u"f(x) = 0x1F;"_s}) {
        EXPECT_EQ(cleaned(text), text);
    }
}

TEST(TextCleanup, StraightensQuotesThatDoNotMatch)
{
    EXPECT_EQ(cleaned(u"‘--fast'"_s), u"'--fast'"_s);
    EXPECT_EQ(cleaned(u"“so”"_s), u"“so”"_s);
    EXPECT_EQ(cleaned(u"“so\""_s), u"\"so\""_s);
}

TEST(TextCleanup, PutsZerosIntoHexadecimalNumbers)
{
    EXPECT_EQ(cleaned(u"Obe77d1 Read"_s), u"0be77d1 Read"_s);
    EXPECT_EQ(cleaned(u"Obeace"_s), u"Obeace"_s);
    EXPECT_EQ(cleaned(u"10 * Oxlf;"_s), u"10 * 0x1f;"_s);
    EXPECT_EQ(cleaned(u"Oxford"_s), u"Oxford"_s);
}

TEST(TextCleanup, KnowsTheKeysInMenus)
{
    EXPECT_EQ(cleaned(u"Ctrt+P"_s), u"Ctrl+P"_s);
    EXPECT_EQ(cleaned(u"Redo Ctrl十Y"_s), u"Redo Ctrl+Y"_s);
    EXPECT_EQ(cleaned(u"Ctr1+Shift +sS"_s), u"Ctrl+Shift+S"_s);
    EXPECT_EQ(cleaned(u"1 + 2"_s), u"1 + 2"_s);
}

TEST(TextCleanup, SeesTheFirstPersonInABar)
{
    EXPECT_EQ(cleaned(u"| can't say"_s), u"I can't say"_s);
    EXPECT_EQ(cleaned(u"Yes. |'ll go"_s), u"Yes. I'll go"_s);
    EXPECT_EQ(cleaned(u"ls | grep think"_s), u"ls | grep think"_s);
    EXPECT_EQ(cleaned(u"| wc -l"_s), u"| wc -l"_s);
}

TEST(TextCleanup, SeparatesNothingInColumns)
{
    EXPECT_EQ(cleanedDown(u"小 雨,"_s), u"小雨，"_s);
}

TEST(Scripts, KnowTheirCharacters)
{
    EXPECT_TRUE(Scripts::isWide(u"漢"_s));
    EXPECT_TRUE(Scripts::isWide(u"。"_s));
    EXPECT_TRUE(Scripts::isWide(u"（"_s));
    EXPECT_TRUE(Scripts::isWide(u"𠮟"_s));
    EXPECT_FALSE(Scripts::isWide(u"é"_s));
    EXPECT_TRUE(Scripts::isWidePunctuation(u"、"_s));
    EXPECT_FALSE(Scripts::isWidePunctuation(u"ー"_s));
    EXPECT_TRUE(Scripts::isKana(u'ー'));
    EXPECT_FALSE(Scripts::isKatakana(u'ー'));
    EXPECT_TRUE(Scripts::isNarrow(u"~"_s));
    EXPECT_FALSE(Scripts::isNarrow(u" "_s));
}

} // namespace orvesa
