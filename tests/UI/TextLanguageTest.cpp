#include "UI/TextLanguage.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

constexpr auto undecided = TextLanguage::korean; // nothing below is Korean unless it says so

TEST(TextLanguageTest, KnowsEachLanguageByWhatOnlyItHas)
{
    EXPECT_EQ(textLanguage(u"図書館は九時に開きます。", undecided), TextLanguage::japanese);
    EXPECT_EQ(textLanguage(u"東京都庁の展望室", undecided), TextLanguage::japanese);
    EXPECT_EQ(textLanguage(u"読売新聞", undecided), TextLanguage::japanese);
    EXPECT_EQ(textLanguage(u"圖書館九點開門，天色暗下來時關門。", undecided), TextLanguage::traditionalChinese);
    EXPECT_EQ(textLanguage(u"注音ㄓㄨˋ", undecided), TextLanguage::traditionalChinese);
    EXPECT_EQ(textLanguage(u"图书馆九点开门，天黑时关门。", undecided), TextLanguage::simplifiedChinese);
    EXPECT_EQ(textLanguage(u"도서관은 아홉 시에 문을 엽니다.", TextLanguage::other), TextLanguage::korean);
    EXPECT_EQ(textLanguage(u"한국어와 漢字", TextLanguage::other), TextLanguage::korean);
}

TEST(TextLanguageTest, TakesCharactersThatAllShareForTheGivenLanguage)
{
    EXPECT_EQ(textLanguage(u"明日", TextLanguage::japanese), TextLanguage::japanese);
    EXPECT_EQ(textLanguage(u"明日", TextLanguage::traditionalChinese), TextLanguage::traditionalChinese);
    EXPECT_EQ(textLanguage(u"AI 直骨令", TextLanguage::other), TextLanguage::other);
    EXPECT_EQ(textLanguage(u"図圖", TextLanguage::japanese), TextLanguage::japanese)
        << "as much for one as for the other";
}

TEST(TextLanguageTest, HasNoOpinionOnTextsWithoutThoseCharacters)
{
    for (const QStringView text : {u"", u"The library opens at nine.", u"مرحبا 📚", u"…、。"}) {
        EXPECT_EQ(textLanguage(text, TextLanguage::japanese), TextLanguage::other) << text.toString().toStdString();
    }
}

TEST(TextLanguageTest, LeavesAChineseTextWithASingleKanaChinese)
{
    EXPECT_EQ(textLanguage(u"這家優の良品店在車站旁邊，每天早上九點開門。", undecided),
              TextLanguage::traditionalChinese);
}

TEST(TextLanguageTest, LeavesAChineseTextWithAKoreanNameChinese)
{
    EXPECT_EQ(textLanguage(u"這家店的招牌上寫著한국，每天早上九點開門，週末常有從遠處來的客人排隊等候。", undecided),
              TextLanguage::traditionalChinese);
    EXPECT_EQ(textLanguage(u"大韓民國은 民主共和國이다.", TextLanguage::other), TextLanguage::korean);
}

TEST(TextLanguageTest, KnowsOldCharactersThatJapaneseKeptInUse)
{
    EXPECT_EQ(textLanguage(u"外国為替市場", TextLanguage::japanese), TextLanguage::japanese);
    EXPECT_EQ(textLanguage(u"脳裡", TextLanguage::japanese), TextLanguage::japanese);
    EXPECT_EQ(textLanguage(u"裡面", TextLanguage::traditionalChinese), TextLanguage::traditionalChinese);
}

TEST(TextLanguageTest, LooksAtTheBeginningOfALongTextOnly)
{
    EXPECT_EQ(textLanguage(QString(100000, u'x') + u"はい"_s, undecided), TextLanguage::other);
    EXPECT_EQ(textLanguage(u"はい"_s + QString(100000, u'對'), undecided), TextLanguage::traditionalChinese);
}

} // namespace
} // namespace orvesa
