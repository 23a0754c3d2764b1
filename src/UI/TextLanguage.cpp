#include "UI/TextLanguage.h"

#include <QChar>
#include <QLocale>

#include <algorithm>

namespace orvesa {

namespace {

/// Enough to tell, and quick for a text of any length.
constexpr qsizetype judgedLength = 2000;

// Frequent characters that only one of the three ways of writing has.
constexpr QStringView onlyTraditional =
    u"們這說對發經學應變廣圖當實區號處舊權觀黃兒沒嗎麼譯讀賣驗關樂圓歸氣澤戰單惡國會來與從點體豐擇獨團邊邏"
    u"辦壓價專屬將帶齊濟總續檢據轉";
constexpr QStringView onlySimplified =
    u"们这说对发经应变图实处权观吗译读卖验关乐归泽战单恶为择团边逻办压专带齐济总续检转"
    u"时间问门见话请让车东长书开还进过现给样认识语简";
constexpr QStringView onlyJapanese =
    u"図読売対発経済変広円駅検権続絵歩毎渋沢辺塩桜竜鉄営険戦単悪価仏払気帰訳説黒験択囲応団圧専帯斉総拠転楽県込働畑";

struct Count {
    int han = 0;
    int kana = 0;
    int hangul = 0;
    int bopomofo = 0;
    int traditional = 0;
    int simplified = 0;
    int japanese = 0;
};

Count counted(QStringView text)
{
    Count count;
    for (const QChar character : text.first(std::min(text.size(), judgedLength))) {
        switch (character.script()) {
        case QChar::Script_Han:
            ++count.han;
            count.traditional += static_cast<int>(onlyTraditional.contains(character));
            count.simplified += static_cast<int>(onlySimplified.contains(character));
            count.japanese += static_cast<int>(onlyJapanese.contains(character));
            break;
        case QChar::Script_Hiragana:
        case QChar::Script_Katakana:
            ++count.kana;
            break;
        case QChar::Script_Hangul:
            ++count.hangul;
            break;
        case QChar::Script_Bopomofo:
            ++count.bopomofo;
            break;
        default:
            break;
        }
    }
    return count;
}

} // namespace

TextLanguage textLanguage(QStringView text, TextLanguage undecided)
{
    const Count count = counted(text);
    // A Chinese text may have a foreign shop's name or a single の in it; a Japanese or a Korean one is full of its own
    // letters.
    constexpr int hanPerLetter = 10;
    if (count.hangul > count.kana && count.hangul * hanPerLetter >= count.han) {
        return TextLanguage::korean;
    }
    if (count.kana > 0 && count.kana * hanPerLetter >= count.han) {
        return TextLanguage::japanese;
    }
    const int chinese = std::max(count.traditional + count.bopomofo, count.simplified);
    if (count.japanese > chinese) {
        return TextLanguage::japanese;
    }
    if (chinese > count.japanese && count.traditional + count.bopomofo != count.simplified) {
        return chinese > count.simplified ? TextLanguage::traditionalChinese : TextLanguage::simplifiedChinese;
    }
    return count.han > 0 ? undecided : TextLanguage::other;
}

TextLanguage textLanguage(AppLanguage language)
{
    switch (language) {
    case AppLanguage::traditionalChinese:
        return TextLanguage::traditionalChinese;
    case AppLanguage::japanese:
        return TextLanguage::japanese;
    case AppLanguage::english:
        break;
    }
    return TextLanguage::other;
}

TextLanguage desktopLanguage()
{
    const QLocale locale = QLocale::system();
    switch (locale.language()) {
    case QLocale::Chinese:
        return locale.script() == QLocale::TraditionalHanScript ? TextLanguage::traditionalChinese
                                                                : TextLanguage::simplifiedChinese;
    case QLocale::Japanese:
        return TextLanguage::japanese;
    case QLocale::Korean:
        return TextLanguage::korean;
    default:
        return TextLanguage::other;
    }
}

} // namespace orvesa
