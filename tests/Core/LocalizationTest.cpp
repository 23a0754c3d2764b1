#include "Core/Localization.h"
#include "Core/LocalizationTables.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

const std::set<L10nKey> formatKeys{
    L10nKey::taskTranslateTitle, L10nKey::taskPolishTitle, L10nKey::errorAPIRequestFailed,
    L10nKey::resetHelp,          L10nKey::feedbackInUse,   L10nKey::msgSaveFailed,
    L10nKey::msgRemoveFailed,    L10nKey::msgKeyInvalid,   L10nKey::useDefaultModel,
};

class EveryLanguage : public ::testing::TestWithParam<AppLanguage> {};

INSTANTIATE_TEST_SUITE_P(Localization, EveryLanguage, ::testing::ValuesIn(allCases<AppLanguage>()),
                         [](const auto &instance) { return rawValue(instance.param).remove(u'-').toStdString(); });

TEST_P(EveryLanguage, hasATextForEachOfThe99Keys)
{
    EXPECT_EQ(allCases<L10nKey>().size(), 99U);
    for (const L10nKey key : allCases<L10nKey>()) {
        EXPECT_FALSE(Localization::string(key, GetParam()).trimmed().isEmpty()) << rawValue(key).toStdString();
    }
}

TEST_P(EveryLanguage, holdsThePlaceholderOnceInTheNineFormatsAndNowhereElse)
{
    for (const L10nKey key : allCases<L10nKey>()) {
        const QString text = Localization::string(key, GetParam());
        EXPECT_EQ(text.count(u"%@"_s), formatKeys.contains(key) ? 1 : 0) << rawValue(key).toStdString();
        EXPECT_EQ(text.count(u'%'), text.count(u"%@"_s)) << rawValue(key).toStdString();
    }
}

TEST_P(EveryLanguage, writesTheEllipsisAsOneCharacter)
{
    for (const L10nKey key : allCases<L10nKey>()) {
        EXPECT_FALSE(Localization::string(key, GetParam()).contains(u"..."_s)) << rawValue(key).toStdString();
    }
    for (const L10nKey key :
         {L10nKey::menuSettings, L10nKey::panelThinking, L10nKey::typeShortcut, L10nKey::msgTesting}) {
        EXPECT_TRUE(Localization::string(key, GetParam()).endsWith(u'…')) << rawValue(key).toStdString();
    }
}

TEST_P(EveryLanguage, separatesThePathOfASettingWithTheSingleAngle)
{
    EXPECT_EQ(Localization::string(L10nKey::errorAccessibilityPermissionDenied, GetParam()).count(u" › "_s), 2);
    const QString capture = Localization::string(L10nKey::errorOCRCaptureFailed, GetParam());
    EXPECT_EQ(capture.count(u" › "_s), GetParam() == AppLanguage::english ? 1 : 2);
    for (const L10nKey key : allCases<L10nKey>()) {
        EXPECT_FALSE(Localization::string(key, GetParam()).contains(u'>')) << rawValue(key).toStdString();
    }
}

TEST_P(EveryLanguage, showsTheEscapeKeyAsItsSymbol)
{
    EXPECT_EQ(Localization::string(L10nKey::recorderHelp, GetParam()).count(u'⎋'), 1);
    EXPECT_EQ(Localization::string(L10nKey::shortcutsInfo, GetParam()).count(u'⎋'), 1);
    for (const L10nKey key : allCases<L10nKey>()) {
        EXPECT_FALSE(Localization::string(key, GetParam()).contains(u"Esc"_s)) << rawValue(key).toStdString();
    }
}

TEST_P(EveryLanguage, keepsTheMarkerAndTheProductNameAsTheyAre)
{
    EXPECT_EQ(Localization::string(L10nKey::promptTemplateHint, GetParam()).count(u"{text}"_s), 1);
    EXPECT_TRUE(Localization::string(L10nKey::menuQuit, GetParam()).contains(u"Orvesa Translate"_s));
    EXPECT_TRUE(Localization::string(L10nKey::promptSavedKey, GetParam()).startsWith(u"••••••••"_s));
}

TEST(ChineseAndJapanese, useFullWidthParenthesesAndColons)
{
    for (const AppLanguage language : {AppLanguage::traditionalChinese, AppLanguage::japanese}) {
        for (const L10nKey key : allCases<L10nKey>()) {
            const QString text = Localization::string(key, language);
            EXPECT_FALSE(text.contains(u'(') || text.contains(u')') || text.contains(u':') || text.contains(u','))
                << rawValue(key).toStdString();
        }
        EXPECT_TRUE(Localization::string(L10nKey::resetHelp, language).endsWith(u"（%@）"_s));
        EXPECT_TRUE(Localization::string(L10nKey::msgSaveFailed, language).endsWith(u"：%@"_s));
    }
}

TEST(LocalizedTexts, areExact)
{
    struct Row {
        L10nKey key;
        QString english;
        QString chinese;
        QString japanese;
    };
    const Row rows[] = {
        {L10nKey::menuTranslateSelection, u"Translate Selection"_s, u"翻譯選取文字"_s, u"選択テキストを翻訳"_s},
        {L10nKey::menuOCRTranslate, u"OCR Translate"_s, u"OCR 翻譯"_s, u"OCR 翻訳"_s},
        {L10nKey::statusCopied, u"Result copied to clipboard."_s, u"結果已複製到剪貼簿。"_s,
         u"結果をクリップボードにコピーしました。"_s},
        {L10nKey::errorOCRCaptureFailed,
         u"Screen capture failed. Check Screen Recording permission in System Settings › Privacy & Security."_s,
         u"螢幕擷取失敗。請到「系統設定 › 隱私權與安全性 › 螢幕錄製」確認已授權。"_s,
         u"画面キャプチャに失敗しました。「システム設定 › プライバシーとセキュリティ › 画面収録」の許可を確認してください。"_s},
        {L10nKey::thinkingModeNote,
         u"Lets the model reason before answering (Gemini and Claude). Off is faster and cheaper — recommended for translation."_s,
         u"讓模型先思考再回答（適用於 Gemini 與 Claude）。關閉時較快也較省費用，翻譯情境建議關閉。"_s,
         u"モデルが回答前に推論します（Gemini と Claude に適用）。オフの方が速くて低コストのため、翻訳にはオフを推奨します。"_s},
        {L10nKey::shortcutsInfo,
         u"Click a shortcut, then press the new key combination. Press ⎋ to cancel. Shortcuts must include ⌘, ⌥ or ⌃ (function keys can be used alone)."_s,
         u"點擊快捷鍵欄位後直接按下新的組合鍵，按 ⎋ 取消。快捷鍵必須包含 ⌘、⌥ 或 ⌃（功能鍵可單獨使用）。"_s,
         u"ショートカット欄をクリックして新しいキーの組み合わせを押してください。⎋ でキャンセルします。ショートカットには ⌘・⌥・⌃ のいずれかを含める必要があります（ファンクションキーは単独で使用可能）。"_s},
        {L10nKey::promptSavedKey, u"•••••••• (saved in Keychain)"_s, u"••••••••（已存於 Keychain）"_s,
         u"••••••••（キーチェーンに保存済み）"_s},
        {L10nKey::msgKeyInvalid, u"✗ %@"_s, u"✗ %@"_s, u"✗ %@"_s},
        {L10nKey::feedbackInUse, u"%@ is already used by another action."_s, u"%@ 已被其他動作使用。"_s,
         u"%@ は別のアクションで使用されています。"_s},
        {L10nKey::promptEmptyList, u"No custom prompts yet. Click “Add Prompt” to create one."_s,
         u"尚未建立任何 Prompt，點「新增 Prompt」開始。"_s,
         u"カスタムプロンプトはまだありません。「プロンプトを追加」で作成してください。"_s},
        {L10nKey::noKeyBadge, u"No API key"_s, u"未授權"_s, u"未設定"_s},
        {L10nKey::btnGetAPIKey, u"Get API Key"_s, u"取得 API Key"_s, u"API キーを取得"_s},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(Localization::string(row.key, AppLanguage::english), row.english);
        EXPECT_EQ(Localization::string(row.key, AppLanguage::traditionalChinese), row.chinese);
        EXPECT_EQ(Localization::string(row.key, AppLanguage::japanese), row.japanese);
    }
}

TEST(L10nKey, isNamedByItself)
{
    EXPECT_EQ(rawValue(L10nKey::menuQuit), u"menuQuit"_s);
    EXPECT_EQ(rawValue(L10nKey::errorOCRNoText), u"errorOCRNoText"_s);
    EXPECT_EQ(allCases<L10nKey>().front(), L10nKey::menuTranslateSelection);
    EXPECT_EQ(allCases<L10nKey>().back(), L10nKey::btnGetAPIKey);
    std::set<QString> names;
    for (const L10nKey key : allCases<L10nKey>()) {
        names.insert(rawValue(key));
    }
    EXPECT_EQ(names.size(), 99U);
}

TEST(Lookup, isEnglishAtFirst)
{
    EXPECT_EQ(Localization::current(), AppLanguage::english);
    EXPECT_EQ(Localization::string(L10nKey::menuQuit), u"Quit Orvesa Translate"_s);
}

TEST(Lookup, followsTheCurrentLanguage)
{
    {
        const InterfaceLanguage japanese(AppLanguage::japanese);
        EXPECT_EQ(Localization::string(L10nKey::menuQuit), u"Orvesa Translate を終了"_s);
    }
    {
        const InterfaceLanguage chinese(AppLanguage::traditionalChinese);
        EXPECT_EQ(Localization::string(L10nKey::menuQuit), u"結束 Orvesa Translate"_s);
    }
    EXPECT_EQ(Localization::string(L10nKey::menuQuit), u"Quit Orvesa Translate"_s);
}

TEST(Lookup, fallsBackToEnglishAndThenToTheKeysName)
{
    using Localization::TextRow;
    const TextRow table[] = {{L10nKey::menuTranslateSelection, u"own"}};
    const TextRow english[] = {{L10nKey::menuTranslateSelection, u"English"},
                               {L10nKey::menuPolishSelection, u"polish"}};
    EXPECT_EQ(Localization::lookUp(L10nKey::menuTranslateSelection, table, english), u"own"_s);
    EXPECT_EQ(Localization::lookUp(L10nKey::menuPolishSelection, table, english), u"polish"_s);
    EXPECT_EQ(Localization::lookUp(L10nKey::menuOCRTranslate, table, english), u"menuOCRTranslate"_s);
    EXPECT_EQ(Localization::lookUp(L10nKey::menuQuit, {}, {}), u"menuQuit"_s);
}

TEST(Tables, areRefusedWhenAKeyIsMissingDoubledOrOutOfPlace)
{
    std::vector<Localization::TextRow> rows(Localization::englishRows.begin(), Localization::englishRows.end());
    EXPECT_TRUE(Localization::holdsEveryKeyInOrder(rows));
    std::swap(rows[3], rows[4]);
    EXPECT_FALSE(Localization::holdsEveryKeyInOrder(rows));
    std::swap(rows[3], rows[4]);
    rows[5].key = rows[4].key;
    EXPECT_FALSE(Localization::holdsEveryKeyInOrder(rows));
    rows[5].key = L10nKey::menuQuit;
    EXPECT_TRUE(Localization::holdsEveryKeyInOrder(rows));
    rows.pop_back();
    EXPECT_FALSE(Localization::holdsEveryKeyInOrder(rows));
}

TEST(Format, putsTheArgumentInPlaceOfThePlaceholder)
{
    EXPECT_EQ(Localization::format(L10nKey::resetHelp, u"⌥D"_s), u"Reset to default (⌥D)"_s);
    EXPECT_EQ(Localization::format(L10nKey::feedbackInUse, u"⌘K"_s), u"⌘K is already used by another action."_s);
    EXPECT_EQ(Localization::format(L10nKey::msgKeyInvalid, QString()), u"✗ "_s);
    const InterfaceLanguage japanese(AppLanguage::japanese);
    EXPECT_EQ(Localization::format(L10nKey::useDefaultModel, u"m-1"_s), u"既定値を使用（m-1）"_s);
}

TEST(Format, neverTakesTheArgumentAsAFormat)
{
    EXPECT_EQ(Localization::format(L10nKey::msgSaveFailed, u"%@ %1 %2$@ %n %%"_s),
              u"Failed to save key: %@ %1 %2$@ %n %%"_s);
    EXPECT_EQ(Localization::format(L10nKey::feedbackInUse, u"%@"_s), u"%@ is already used by another action."_s);
}

TEST(Format, leavesATextWithoutPlaceholderAlone)
{
    EXPECT_EQ(Localization::format(L10nKey::menuQuit, u"x"_s), u"Quit Orvesa Translate"_s);
}

} // namespace
} // namespace orvesa
