// The prompts page's widgets: the list, the editor in its place, the keyboard's way, and very many prompts.

#include "App/Settings/PromptEditorView.h"
#include "App/Settings/PromptListView.h"
#include "App/Settings/PromptsSettingsView.h"
#include "App/Settings/SettingsView.h"
#include "App/SettingsFixture.h"
#include "UI/KeyComboRecorderView.h"
#include "UI/SymbolButton.h"
#include "UI/TextArea.h"
#include "UI/TextButton.h"
#include "UI/TextField.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

#include <ctime>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class PromptsPageTest : public testing::Test, protected SettingsOnFakes {
protected:
    PromptsPageTest() { settings.setAppLanguage(AppLanguage::english); }

    void open()
    {
        view.setSelection(SettingsSection::prompts);
        view.show();
        view.activateWindow();
        QCoreApplication::processEvents();
    }

    [[nodiscard]] PromptsSettingsView &page() const { return *view.findChild<PromptsSettingsView *>(); }
    [[nodiscard]] const std::vector<PromptRow *> &rows() const { return page().list().rows(); }

    [[nodiscard]] QStringList shownTexts() const
    {
        QStringList texts;
        const auto labels = view.findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            if (label->isVisible()) {
                texts.append(label->text());
            }
        }
        return texts;
    }

    [[nodiscard]] TextButton *button(const QString &text) const
    {
        const auto found = view.findChildren<TextButton *>();
        for (TextButton *candidate : found) {
            if (candidate->isVisible() && candidate->text() == text) {
                return candidate;
            }
        }
        return nullptr;
    }

    ProviderKeyStatus keyStatus{keychain};
    SettingsView view{services(), keyStatus};
};

/// What this program itself has used: a machine busy with other things must not fail a test.
class CPUTime final {
public:
    void restart() { m_start = std::clock(); }
    [[nodiscard]] double milliseconds() const
    {
        return 1000.0 * static_cast<double>(std::clock() - m_start) / CLOCKS_PER_SEC;
    }

private:
    std::clock_t m_start = std::clock();
};

const KeyCombo controlOptionS{1, CarbonModifier::control | CarbonModifier::option, u"S"_s};

TEST_F(PromptsPageTest, SaysThatThereIsNone)
{
    open();
    EXPECT_TRUE(shownTexts().contains(u"No custom prompts yet. Click “Add Prompt” to create one."_s));
    EXPECT_NE(button(u"Add Prompt"_s), nullptr);
    EXPECT_TRUE(rows().empty());
}

TEST_F(PromptsPageTest, ShowsNameShortcutAndPreviewInStoredOrder)
{
    settings.setCustomPrompts({prompt(u"  Summary \n"_s, u"line one\nline two"_s, controlOptionS), prompt(u" "_s, {})});
    open();
    ASSERT_EQ(rows().size(), 2U);
    const QStringList texts = shownTexts();
    for (const QString &text : {u"Summary"_s, u"⌃⌥S"_s, u"line one line two"_s, u"Untitled Prompt"_s}) {
        EXPECT_TRUE(texts.contains(text)) << text.toStdString();
    }
    EXPECT_FALSE(texts.contains(u"No custom prompts yet. Click “Add Prompt” to create one."_s));
}

TEST_F(PromptsPageTest, TheEditorStandsInPlaceOfTheListUntilItIsDone)
{
    settings.setCustomPrompts({prompt(u"One"_s, u"1"_s, controlOptionS)});
    open();
    rows()[0]->editButton().click();
    ASSERT_NE(page().editor(), nullptr);
    EXPECT_FALSE(page().list().isVisible());
    EXPECT_EQ(button(u"Add Prompt"_s), nullptr);
    EXPECT_EQ(page().editor()->findChild<TextField *>()->text(), u"One"_s);
    EXPECT_EQ(page().editor()->findChild<TextArea *>()->toPlainText(), u"1"_s);
    EXPECT_EQ(page().editor()->findChild<KeyComboRecorderView *>()->shownText(), u"⌃⌥S"_s);
    page().editor()->findChild<TextField *>()->setText(u"Renamed"_s);
    button(u"Cancel"_s)->click();
    EXPECT_EQ(page().editor(), nullptr);
    EXPECT_TRUE(page().list().isVisible());
    EXPECT_EQ(settings.customPrompts()[0].name, u"One"_s);

    rows()[0]->editButton().click();
    page().editor()->findChild<TextField *>()->setText(u"Renamed"_s);
    page().editor()->findChild<TextArea *>()->setPlainText(u"two\nlines"_s);
    button(u"Save"_s)->click();
    EXPECT_EQ(settings.customPrompts()[0].name, u"Renamed"_s);
    EXPECT_EQ(settings.customPrompts()[0].promptTemplate, u"two\nlines"_s);
    EXPECT_TRUE(shownTexts().contains(u"Renamed"_s));
}

TEST_F(PromptsPageTest, KeepsTheBlanksThatNoLineBreaksAt)
{
    settings.setCustomPrompts({prompt(u"French"_s, u"Traduis\u00A0:\n\u3000«\u202F{text}\u00A0»"_s, std::nullopt)});
    open();
    rows()[0]->editButton().click();
    page().editor()->findChild<TextArea *>()->insertPlainText(u"X\n"_s);
    button(u"Save"_s)->click();
    EXPECT_EQ(settings.customPrompts()[0].promptTemplate, u"X\nTraduis\u00A0:\n\u3000«\u202F{text}\u00A0»"_s);
}

TEST_F(PromptsPageTest, TheShortcutIsRecordedRefusedAndTakenAway)
{
    open();
    button(u"Add Prompt"_s)->click();
    auto *recorder = page().editor()->findChild<KeyComboRecorderView *>();
    EXPECT_EQ(recorder->shownText(), u"None"_s);
    auto *removal = page().editor()->findChild<SymbolButton *>();
    EXPECT_FALSE(removal->isVisible());
    recorder->click();
    keyMonitor.press(1, FakeKeyMonitor::option, u"s"_s);
    EXPECT_TRUE(shownTexts().contains(u"⌥S is already used by another action."_s));
    EXPECT_EQ(page().editor()->model().draft().hotKey, std::nullopt);
    keyMonitor.press(1, FakeKeyMonitor::option | FakeKeyMonitor::control, u"s"_s);
    EXPECT_EQ(recorder->shownText(), u"⌃⌥S"_s);
    EXPECT_FALSE(shownTexts().contains(u"⌥S is already used by another action."_s));
    EXPECT_TRUE(removal->isVisible());
    EXPECT_EQ(removal->toolTip(), u"Delete"_s);
    removal->click();
    EXPECT_EQ(recorder->shownText(), u"None"_s);
    EXPECT_FALSE(removal->isVisible());
}

TEST_F(PromptsPageTest, ClosingTheEditorEndsRecording)
{
    open();
    button(u"Add Prompt"_s)->click();
    page().editor()->findChild<KeyComboRecorderView *>()->click();
    EXPECT_TRUE(recording.isRecording());
    button(u"Cancel"_s)->click();
    EXPECT_FALSE(recording.isRecording());
}

TEST_F(PromptsPageTest, TheKeyboardStaysWhereItWasNeeded)
{
    settings.setCustomPrompts({prompt(u"One"_s, u"1"_s), prompt(u"Two"_s, u"2"_s), prompt(u"Three"_s, u"3"_s)});
    open();
    rows()[1]->editButton().click();
    EXPECT_EQ(view.focusWidget(), page().editor()->findChild<TextField *>());
    button(u"Cancel"_s)->click();
    EXPECT_EQ(view.focusWidget(), &rows()[1]->editButton());
    rows()[1]->deleteButton().setFocus();
    rows()[1]->deleteButton().click();
    ASSERT_EQ(rows().size(), 2U);
    EXPECT_EQ(view.focusWidget(), &rows()[1]->deleteButton()); // of what followed
    rows()[1]->deleteButton().click();
    EXPECT_EQ(view.focusWidget(), &rows()[0]->deleteButton()); // of what is left
    rows()[0]->deleteButton().click();
    EXPECT_EQ(view.focusWidget(), button(u"Add Prompt"_s));
    EXPECT_TRUE(settings.customPrompts().empty());
}

/// Makes a shortcut in a row as high as the letters of some fonts are, whatever fonts there are here.
class HighShortcuts final : public QObject {
public:
    HighShortcuts() { QApplication::instance()->installEventFilter(this); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        constexpr int height = 70;
        auto *const label = qobject_cast<QLabel *>(watched);
        if (event->type() == QEvent::ShowToParent && label != nullptr && label->text() == u"F5"_s) {
            label->setMinimumHeight(height);
        }
        return QObject::eventFilter(watched, event);
    }
};

TEST_F(PromptsPageTest, RowsOfDifferentHeightsBecomeEquallyHighAndDoNotOverlap)
{
    const HighShortcuts highShortcuts;
    const auto expectOneAfterTheOther = [this] {
        while (!page().list().isComplete()) {
            QCoreApplication::processEvents();
        }
        int top = 0;
        for (const PromptRow *row : rows()) {
            EXPECT_EQ(row->y(), top);
            EXPECT_EQ(row->height(), rows().front()->height());
            EXPECT_GE(row->height(), row->sizeHint().height());
            top = row->geometry().bottom() + 1 + 10;
        }
        EXPECT_EQ(page().list().height(), top - 10);
    };
    const CustomPrompt low = prompt(u"Summary"_s, u"Sum up."_s);
    CustomPrompt high = low;
    high.hotKey = KeyCombo{96, 0, u"F5"_s};
    settings.setCustomPrompts({low, high});
    open();
    expectOneAfterTheOther();
    ASSERT_LT(rows()[0]->sizeHint().height(), rows()[1]->sizeHint().height());
    const int highest = rows()[0]->height();

    // The highest is neither the first nor the last of those that are made at once or later.
    const std::vector<CustomPrompt> lows(40, low);
    std::vector<CustomPrompt> mixed = lows;
    mixed[17] = high;
    settings.setCustomPrompts(mixed);
    expectOneAfterTheOther();
    EXPECT_EQ(rows()[39]->height(), highest);
    settings.setCustomPrompts(lows);
    expectOneAfterTheOther();
    EXPECT_LT(rows()[39]->height(), highest);
    settings.setCustomPrompts(mixed);
    expectOneAfterTheOther();
    EXPECT_EQ(rows()[39]->height(), highest);
}

TEST_F(PromptsPageTest, OpensAtOnceWithVeryManyPromptsAndVeryLongNames)
{
    std::vector<CustomPrompt> many;
    for (int index = 0; index < 500; ++index) {
        many.push_back(prompt(QString::number(index) + QString(10'000, u'W'), QString(10'000, u'x')));
    }
    settings.setCustomPrompts(many);
    view.show();
    QCoreApplication::processEvents();
    CPUTime time;
    view.setSelection(SettingsSection::prompts);
    view.repaint();
    EXPECT_LT(time.milliseconds(), 100);
    EXPECT_GE(rows().size(), 8U); // what the window shows
    double longest = 0;
    while (!page().list().isComplete()) {
        time.restart();
        QCoreApplication::processEvents();
        longest = std::max(longest, time.milliseconds());
    }
    EXPECT_EQ(rows().size(), 500U);
    EXPECT_LT(longest, 100) << "the event loop was kept waiting";
    QScrollBar *bar = view.findChild<QScrollArea *>()->verticalScrollBar();
    for (int level = 0; level < 10; ++level) {
        QCoreApplication::processEvents();
    }
    EXPECT_GT(bar->maximum(), 500 * 40);
    time.restart();
    bar->setValue(bar->maximum());
    view.repaint();
    EXPECT_LT(time.milliseconds(), 100);
    for (const QLabel *label : view.findChildren<QLabel *>()) {
        EXPECT_LE(label->text().size(), 300);
    }
}

} // namespace
} // namespace orvesa
