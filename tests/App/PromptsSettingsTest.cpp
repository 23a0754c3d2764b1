// The prompts page's logic: the list and the editor, without widgets.

#include "App/Settings/PromptEditorViewModel.h"
#include "App/Settings/PromptsSettingsViewModel.h"
#include "App/SettingsFixture.h"
#include "fakes/SignalCount.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

const KeyCombo controlOptionS{1, CarbonModifier::control | CarbonModifier::option, u"S"_s};
const KeyCombo optionS{1, CarbonModifier::option, u"S"_s};
const KeyCombo f5{96, 0, u"F5"_s};

class PromptsSettingsTest : public testing::Test, protected SettingsOnFakes {
protected:
    PromptsSettingsTest()
    {
        settings.setCustomPrompts({prompt(u"One"_s, u"1 {text}"_s, controlOptionS), prompt(u"Two"_s, u"2"_s),
                                   prompt(u"Three"_s, u"3"_s, f5)});
    }

    PromptEditorViewModel &openEditor()
    {
        editor = std::make_unique<PromptEditorViewModel>(settings, *list.editingDraft(), [this] {
            ++done;
            list.finishEditing();
        });
        return *editor;
    }

    [[nodiscard]] QStringList names() const
    {
        QStringList result;
        for (const CustomPrompt &stored : settings.customPrompts()) {
            result.append(stored.name);
        }
        return result;
    }

    [[nodiscard]] QUuid id(std::size_t index) const { return settings.customPrompts().at(index).id; }

    int done = 0;
    PromptsSettingsViewModel list{settings};
    std::unique_ptr<PromptEditorViewModel> editor;
};

TEST_F(PromptsSettingsTest, StartsWithTheList)
{
    EXPECT_EQ(list.editingDraft(), std::nullopt);
    EXPECT_EQ(list.prompts().size(), 3U);
}

TEST_F(PromptsSettingsTest, AddingOpensAnEmptyDraftAndStoresNothing)
{
    const std::vector<CustomPrompt> before = settings.customPrompts();
    list.addPrompt();
    ASSERT_TRUE(list.editingDraft());
    EXPECT_EQ(list.editingDraft()->name, QString());
    EXPECT_EQ(list.editingDraft()->promptTemplate, QString());
    EXPECT_EQ(list.editingDraft()->hotKey, std::nullopt);
    EXPECT_FALSE(list.editingDraft()->id.isNull());
    openEditor().setName(u"Typed"_s);
    editor->cancel();
    EXPECT_EQ(done, 1);
    EXPECT_EQ(list.editingDraft(), std::nullopt);
    EXPECT_EQ(settings.customPrompts(), before);
}

TEST_F(PromptsSettingsTest, ANewPromptGoesToTheEnd)
{
    list.addPrompt();
    openEditor().setName(u"Four"_s);
    editor->setTemplate(u"Do {text}"_s);
    const std::size_t writes = defaults.writes().size();
    editor->save();
    EXPECT_EQ(names(), (QStringList{u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s}));
    EXPECT_EQ(settings.customPrompts().back().promptTemplate, u"Do {text}"_s);
    EXPECT_EQ(defaults.writes().size(), writes + 1);
    EXPECT_EQ(done, 1);
    EXPECT_EQ(list.editingDraft(), std::nullopt);
}

TEST_F(PromptsSettingsTest, AnEditedPromptKeepsItsPlace)
{
    list.edit(id(1));
    openEditor().setName(u"Changed"_s);
    EXPECT_EQ(names(), (QStringList{u"One"_s, u"Two"_s, u"Three"_s})); // until it is saved
    editor->save();
    EXPECT_EQ(names(), (QStringList{u"One"_s, u"Changed"_s, u"Three"_s}));
}

TEST_F(PromptsSettingsTest, StoresWhatWasTypedAsItIs)
{
    list.addPrompt();
    openEditor().setName(u"  "_s);
    editor->setTemplate(u"\n x \n"_s);
    editor->save();
    EXPECT_EQ(settings.customPrompts().back().name, u"  "_s);
    EXPECT_EQ(settings.customPrompts().back().promptTemplate, u"\n x \n"_s);
    EXPECT_EQ(settings.customPrompts().back().shownName(), u"Untitled Prompt"_s);
}

TEST_F(PromptsSettingsTest, APromptDeletedMeanwhileComesBackAtTheEnd)
{
    list.edit(id(0));
    openEditor();
    settings.setCustomPrompts({settings.customPrompts()[1]});
    editor->save();
    EXPECT_EQ(names(), (QStringList{u"Two"_s, u"One"_s}));
}

TEST_F(PromptsSettingsTest, SavesIntoTheFirstPromptWithItsIdentifier)
{
    const CustomPrompt twin = settings.customPrompts()[0];
    settings.setCustomPrompts({twin, settings.customPrompts()[1], twin});
    list.edit(twin.id);
    openEditor().setName(u"Changed"_s);
    editor->save();
    EXPECT_EQ(names(), (QStringList{u"Changed"_s, u"Two"_s, u"One"_s}));
}

TEST_F(PromptsSettingsTest, DeletesEveryPromptWithTheIdentifierAtOnce)
{
    const CustomPrompt twin = settings.customPrompts()[0];
    settings.setCustomPrompts({twin, settings.customPrompts()[1], twin});
    const std::size_t writes = defaults.writes().size();
    list.remove(twin.id);
    EXPECT_EQ(names(), QStringList{u"Two"_s});
    EXPECT_EQ(defaults.writes().size(), writes + 1);
}

TEST_F(PromptsSettingsTest, EditingSomethingThatIsGoneOpensNothing)
{
    const SignalCount changes(&list, &PromptsSettingsViewModel::editingDraftChanged);
    list.edit(QUuid::createUuid());
    EXPECT_EQ(list.editingDraft(), std::nullopt);
    EXPECT_EQ(changes.size(), 0);
}

TEST_F(PromptsSettingsTest, FollowsPromptsFromOutside)
{
    const SignalCount changes(&list, &PromptsSettingsViewModel::promptsChanged);
    defaults.changeFromOutside(u"settings.customPrompts"_s, std::nullopt);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_TRUE(list.prompts().empty());
}

TEST_F(PromptsSettingsTest, RefusesTheShortcutOfAnActionOrAnotherPrompt)
{
    list.edit(id(1));
    openEditor();
    EXPECT_EQ(editor->validate(optionS), u"⌥S is already used by another action."_s);
    EXPECT_EQ(editor->validate(controlOptionS), u"⌃⌥S is already used by another action."_s);
    EXPECT_EQ(editor->validate(f5), u"F5 is already used by another action."_s);
    EXPECT_EQ(editor->validate({96, CarbonModifier::shift, u"F5"_s}), std::nullopt);
}

TEST_F(PromptsSettingsTest, AllowsItsOwnShortcutAgain)
{
    list.edit(id(0));
    openEditor();
    EXPECT_EQ(editor->validate(controlOptionS), std::nullopt);
}

TEST_F(PromptsSettingsTest, AFollowedChangeOfAnActionsShortcutIsAConflictToo)
{
    settings.setCombo({96, CarbonModifier::command, u"F5"_s}, HotKeyAction::ocrTranslate);
    list.edit(id(1));
    openEditor();
    EXPECT_EQ(editor->validate({96, CarbonModifier::command, u"F5"_s}), u"⌘F5 is already used by another action."_s);
    EXPECT_EQ(editor->validate({0, CarbonModifier::option, u"A"_s}), std::nullopt);
}

TEST_F(PromptsSettingsTest, ARefusalStaysUntilItIsCleared)
{
    list.edit(id(0));
    openEditor();
    const SignalCount feedback(editor.get(), &PromptEditorViewModel::feedbackChanged);
    editor->setFeedbackMessage(u"no"_s);
    EXPECT_EQ(editor->feedbackMessage(), u"no"_s);
    EXPECT_EQ(editor->draft().hotKey, controlOptionS);
    editor->setFeedbackMessage(std::nullopt);
    EXPECT_EQ(editor->feedbackMessage(), std::nullopt);
    EXPECT_EQ(feedback.size(), 2);
}

TEST_F(PromptsSettingsTest, TheShortcutCanBeSetAndTakenAway)
{
    list.edit(id(0));
    openEditor();
    const SignalCount changes(editor.get(), &PromptEditorViewModel::hotKeyChanged);
    editor->setHotKey(std::nullopt);
    editor->save();
    EXPECT_EQ(settings.customPrompts()[0].hotKey, std::nullopt);
    list.edit(id(0));
    openEditor().setHotKey(optionS);
    editor->save();
    EXPECT_EQ(settings.customPrompts()[0].hotKey, optionS);
    EXPECT_EQ(changes.size(), 1);
}

} // namespace
} // namespace orvesa
