// The page for services and keys, over fakes.

#include "App/SettingsViewFixture.h"

#include "App/Settings/ProviderSettingsSection.h"
#include "UI/FontFamilies.h"
#include "UI/LinkButton.h"
#include "UI/SecretField.h"
#include "UI/SymbolButton.h"
#include "UI/TextButton.h"

#include <QApplication>
#include <QClipboard>
#include <QFontInfo>
#include <QMainWindow>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace orvesa {

TEST_F(SettingsViewTest, EachServiceHasItsSectionWithItsLinkAndDefaultModel)
{
    open(SettingsSection::providers);
    const auto sections = view().findChildren<ProviderSettingsSection *>();
    ASSERT_EQ(sections.size(), 4);
    for (int index = 0; index < 4; ++index) {
        const auto type = static_cast<AIProviderType>(index);
        EXPECT_EQ(sections[index]->model().type(), type);
        auto *link = sections[index]->findChild<LinkButton *>();
        EXPECT_EQ(link->text(), u"Get API Key"_s);
        EXPECT_EQ(link->toolTip(), apiKeyURL(type).toString());
        link->click();
        EXPECT_EQ(workspace.opened().last(), apiKeyURL(type));
        EXPECT_EQ(sections[index]->findChildren<QLineEdit *>().last()->placeholderText(), defaultModel(type));
    }
}

TEST_F(SettingsViewTest, TheModelMenuListsTheModelsAndTheDefault)
{
    open(SettingsSection::providers);
    auto *section = view().findChildren<ProviderSettingsSection *>().first();
    const auto *field = section->findChildren<QLineEdit *>().last();
    const auto openMenu = [section] {
        section->findChild<SymbolButton *>()->click();
        return section->findChildren<QMenu *>().last();
    };
    QMenu *menu = openMenu();
    QStringList titles;
    for (const QAction *action : menu->actions()) {
        titles.append(action->isSeparator() ? u"-"_s : action->text());
    }
    EXPECT_EQ(titles, (QStringList{u"gpt-5.4-mini"_s, u"gpt-5.4-nano"_s, u"gpt-5.4"_s, u"gpt-5.5"_s, u"-"_s,
                                   u"Use default (gpt-5.4-mini)"_s}));
    menu->actions().at(3)->trigger();
    EXPECT_EQ(field->text(), u"gpt-5.5"_s);
    EXPECT_EQ(settings.storedModel(AIProviderType::openAI), u"gpt-5.5"_s);
    menu->close();
    openMenu()->actions().last()->trigger();
    EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(settings.storedModel(AIProviderType::openAI), std::nullopt);
}

TEST_F(SettingsViewTest, TheModelMenuIsDrawnInTheInterfaceLanguage)
{
    open(SettingsSection::providers);
    const QString desktop = QFontInfo(QGuiApplication::font()).family();
    for (const AppLanguage language : {AppLanguage::traditionalChinese, AppLanguage::japanese, AppLanguage::english}) {
        settings.setAppLanguage(language);
        auto *section = view().findChildren<ProviderSettingsSection *>().first();
        section->findChild<SymbolButton *>()->click();
        auto *menu = section->findChildren<QMenu *>().last();
        EXPECT_EQ(menu->font().families(), FontFamilies::forInterface(desktop, textLanguage(language)));
        menu->close();
    }
}

TEST_F(SettingsViewTest, TheKeysFieldGivesItsTextToNobody)
{
    open(SettingsSection::providers);
    auto *field = view().findChild<SecretField *>();
    EXPECT_EQ(field->placeholderText(), u"Enter API key"_s);
    field->insert(u"zebra"_s);
    QApplication::clipboard()->setText(u"kept"_s);
    field->selectAll();
    field->copy();
    field->cut();
    EXPECT_EQ(QApplication::clipboard()->text(), u"kept"_s);
    field->setText(u"zebra"_s);
    field->wipe();
    field->undo();
    EXPECT_EQ(field->text(), QString());
    EXPECT_TRUE(field->inputMethodHints().testFlag(Qt::ImhSensitiveData));
}

TEST_F(SettingsViewTest, ASavedKeyIsWipedFromItsField)
{
    open(SettingsSection::providers);
    auto *field = view().findChild<SecretField *>();
    field->insert(u"zebra"_s);
    Q_EMIT field->textEdited(field->text());
    auto *save = named<TextButton>(u"Save"_s, u"OpenAI"_s);
    EXPECT_TRUE(save->isEnabled());
    save->click();
    EXPECT_EQ(keyStore.item(u"current"_s, u"openai_api_key"_s), QByteArray("zebra"));
    EXPECT_EQ(field->text(), QString());
    field->undo();
    EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(field->placeholderText(), u"•••••••• (saved in Keychain)"_s);
    EXPECT_TRUE(shownTexts().contains(u"Key saved"_s));
    EXPECT_FALSE(item(SettingsSection::providers).showsNoKeyBadge());
}

TEST_F(SettingsViewTest, WhoeverDeclinesToUnlockTheKeyStoreIsAskedOnceInAWindow)
{
    for (const QString &account : {u"openai_api_key"_s, u"gemini_api_key"_s, u"xai_api_key"_s}) {
        keyStore.setItem(u"current"_s, account, "secret");
    }
    keyStore.setStatus(FakeKeyStore::Operation::copyMatching, KeyStoreStatus::userCanceled);
    keyStore.gate().close();
    open();
    view().setSelection(SettingsSection::providers);
    keyStore.gate().open();
    EXPECT_EQ(keyStore.calls().size(), 1U);
    EXPECT_FALSE(item(SettingsSection::providers).showsNoKeyBadge()) << "nobody knows";
    view().setSelection(SettingsSection::general);
    view().setSelection(SettingsSection::providers);
    EXPECT_EQ(keyStore.calls().size(), 1U);
    EXPECT_FALSE(shownTexts().contains(u"Key saved"_s));

    controller->window().close();
    keyStore.setStatus(FakeKeyStore::Operation::copyMatching, std::nullopt);
    controller->showWindow(); // which asks anew, and is let in
    EXPECT_EQ(shownTexts().count(u"Key saved"_s), 3);
    EXPECT_FALSE(item(SettingsSection::providers).showsNoKeyBadge());
}

TEST_F(SettingsViewTest, LeavingThePageWhileAKeyIsTestedTouchesNothing)
{
    keyStore.setItem(u"current"_s, u"openai_api_key"_s, "stored");
    open(SettingsSection::providers);
    providers.gate().close();
    named<TextButton>(u"Test"_s, u"OpenAI"_s)->click();
    EXPECT_TRUE(shownTexts().contains(u"Testing API key…"_s));
    view().setSelection(SettingsSection::general);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(providers.calls()[0].stop.stop_requested());
    providers.gate().open();
    view().setSelection(SettingsSection::providers);
    EXPECT_FALSE(shownTexts().contains(u"Testing API key…"_s));
}

TEST_F(SettingsViewTest, ClosingTheWindowForgetsATypedKey)
{
    open(SettingsSection::providers);
    auto *field = view().findChild<SecretField *>();
    field->insert(u"zebra"_s);
    Q_EMIT field->textEdited(field->text());
    controller->window().close();
    controller->showWindow();
    EXPECT_EQ(view().findChild<SecretField *>()->text(), QString());
}

} // namespace orvesa
