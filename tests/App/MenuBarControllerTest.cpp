#include "App/MenuBarController.h"

#include "App/ApplicationOnFakes.h"
#include "App/StatusItemIcon.h"
#include "UI/Symbols.h"

#include <gtest/gtest.h>

#include <QCursor>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class MenuBarControllerTest : public testing::Test, protected ApplicationOnFakes {
protected:
    static QStringList titles(const QMenu &menu)
    {
        QStringList result;
        const auto actions = menu.actions();
        for (const QAction *action : actions) {
            result.append(action->isSeparator() ? u"-"_s : action->text());
        }
        return result;
    }

    static CustomPrompt prompt(const QString &name)
    {
        CustomPrompt result;
        result.name = name;
        result.promptTemplate = u"Do: "_s + name;
        return result;
    }

    int opened = 0;
    int quits = 0;
    MenuBarController controller{*coordinator, settings, {[this] { ++opened; }, [this] { ++quits; }}};
};

TEST_F(MenuBarControllerTest, HasSevenRowsWithoutPrompts)
{
    EXPECT_EQ(titles(*controller.build()),
              QStringList({u"Translate Selection"_s, u"Polish Selection"_s, u"OCR Translate"_s, u"-"_s, u"Settings…"_s,
                           u"-"_s, u"Quit Orvesa Translate"_s}));
}

TEST_F(MenuBarControllerTest, ListsThePromptsInTheirOrder)
{
    settings.setCustomPrompts({prompt(u"R&D"_s), prompt(QString())});
    const auto menu = controller.build();
    EXPECT_EQ(titles(*menu).mid(3, 4), QStringList({u"-"_s, u"Prompts"_s, u"-"_s, u"Settings…"_s}));
    EXPECT_EQ(titles(*menu->actions().at(4)->menu()), QStringList({u"R&&D"_s, u"Untitled Prompt"_s}));
}

TEST_F(MenuBarControllerTest, WritesATitleSoThatItsHostReadsTheName)
{
    using MenuHost = MenuBarController::MenuHost;
    settings.setCustomPrompts({prompt(u"A & B & C"_s), prompt(u"fix_my_code_"_s), prompt(u"_&_"_s), prompt(u"R&"_s),
                               prompt(u"Tab\there\nand\u2028there"_s)});
    const auto shown = controller.build(MenuHost::widgets);
    EXPECT_EQ(titles(*shown->actions().at(4)->menu()),
              QStringList({u"A && B && C"_s, u"fix_my_code_"_s, u"_&&_"_s, u"R&&"_s, u"Tab here and there"_s}));
    const auto told = controller.build(MenuHost::bus);
    EXPECT_EQ(titles(*told->actions().at(4)->menu()),
              QStringList({u"A && B & C"_s, u"fix__my__code__"_s, u"__&&__"_s, u"R&&"_s, u"Tab here and there"_s}));
}

TEST_F(MenuBarControllerTest, RunsItsActionsAfterTheDelay)
{
    elements.focusSelectedText(u"Hola"_s);
    const auto menu = controller.build();
    menu->actions().at(0)->trigger();
    EXPECT_TRUE(calls().empty());
    clock.advance(200ms);
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->task, coordinator->translateTask());
    menu->actions().at(1)->trigger();
    clock.advance(200ms);
    ASSERT_EQ(calls().size(), 2U);
    EXPECT_EQ(calls()[1]->task, coordinator->polishTask());
    menu->actions().at(4)->trigger();
    menu->actions().at(6)->trigger();
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(quits, 1);
}

TEST_F(MenuBarControllerTest, RunsAPromptThatIsStillThere)
{
    elements.focusSelectedText(u"Hola"_s);
    settings.setCustomPrompts({prompt(u"One"_s), prompt(u"Two"_s)});
    const auto menu = controller.build();
    const auto prompts = menu->actions().at(4)->menu()->actions();
    prompts.at(1)->trigger();
    clock.advance(200ms);
    ASSERT_EQ(calls().size(), 1U);
    EXPECT_EQ(calls()[0]->task, AITask(CustomTask{u"Two"_s, u"Do: Two"_s}));
    settings.setCustomPrompts({});
    prompts.at(0)->trigger();
    clock.advance(200ms);
    EXPECT_EQ(calls().size(), 1U);
}

TEST_F(MenuBarControllerTest, LeavesThePanelAloneWhileItsMenuIsOpen)
{
    panel.show(FloatingResultPanelController::Position::nearMouse);
    const auto menu = controller.build();
    Q_EMIT menu->aboutToShow();
    QCursor::setPos(5, 5);
    mouse.pressAt(QCursor::pos());
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(panel.isVisible());
    Q_EMIT menu->aboutToHide();
    mouse.pressAt(QCursor::pos());
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(panel.isVisible());
}

TEST(StatusItemIcon, CanBeReadOnLightAndDarkTrays)
{
    EXPECT_EQ(StatusItemIcon::colorOn(Qt::black), QColor(Qt::white));
    EXPECT_EQ(StatusItemIcon::colorOn(QColor(0x2b, 0x30, 0x3b)), QColor(Qt::white));
    EXPECT_LT(StatusItemIcon::colorOn(Qt::white).lightness(), 60);
    EXPECT_LT(StatusItemIcon::colorOn(QColor(0xd6, 0xd6, 0xd6)).lightness(), 60);
}

TEST(StatusItemIcon, IsSharpAtEveryScale)
{
    for (const qreal scale : {1.0, 1.5, 2.0}) {
        const QIcon icon = Symbols::icon(u"character.bubble"_s, Qt::white);
        const QPixmap picture = icon.pixmap(QSize(18, 18), scale);
        EXPECT_EQ(picture.size(), QSize(18, 18) * scale);
    }
}

TEST_F(MenuBarControllerTest, IsBuiltAfreshForAnotherLanguageOnly)
{
    const QMenu *before = &controller.menu();
    settings.setAppLanguage(settings.appLanguage());
    EXPECT_EQ(&controller.menu(), before);
    settings.setAppLanguage(AppLanguage::japanese);
    EXPECT_NE(&controller.menu(), before);
    EXPECT_EQ(controller.menu().actions().at(6)->text(), u"Orvesa Translate を終了"_s);
    settings.setAppLanguage(AppLanguage::english);
}

TEST_F(MenuBarControllerTest, StaysUsableWithVeryManyPromptsAndVeryLongNames)
{
    std::vector<CustomPrompt> many;
    for (int index = 0; index < 500; ++index) {
        many.push_back(prompt(QString::number(index) + QString(10'000, u'W')));
    }
    settings.setCustomPrompts(many);
    const auto actions = controller.menu().actions();
    const auto submenu =
        std::find_if(actions.begin(), actions.end(), [](const QAction *action) { return action->menu(); });
    ASSERT_NE(submenu, actions.end());
    QMenu *prompts = (*submenu)->menu();
    ASSERT_EQ(prompts->actions().size(), 500);
    EXPECT_EQ(prompts->actions().front()->text(), u'0' + QString(79, u'W') + u'…');
    EXPECT_LT(prompts->sizeHint().width(), 2'000); // one column
}

} // namespace
} // namespace orvesa
