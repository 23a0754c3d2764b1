#include "UI/FloatingResultPanelController.h"

#include "Core/SettingsStore.h"
#include "UI/AdaptiveTextScrollView.h"
#include "UI/Spinner.h"
#include "fakes/Awaited.h"
#include "fakes/FakeMouseMonitor.h"
#include "fakes/FakePanelWindow.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/Happening.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QMenu>
#include <QMouseEvent>
#include <QScreen>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using Position = FloatingResultPanelController::Position;

class FloatingResultPanelControllerTest : public testing::Test {
protected:
    QWidget *panel()
    {
        const auto windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (window->windowType() == Qt::Tool) {
                return window;
            }
        }
        return nullptr;
    }

    /// Lets what was scheduled on the main thread happen.
    void settle() { QCoreApplication::sendPostedEvents(); }

    /// Lets timers run out that have no clock of a test's.
    static void passTime(qint64 milliseconds)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < milliseconds) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
    }

    /// Whether the panel is gone within a time that is more than enough.
    [[nodiscard]] bool goes()
    {
        return happens([this] { return !controller.isVisible(); });
    }

    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings{defaults, languages};
    FakePanelWindow panelWindow;
    FakeMouseMonitor mouse;
    FloatingResultPanelController controller{settings, panelWindow, mouse};
    const QRect visible = QGuiApplication::primaryScreen()->availableGeometry();
};

TEST_F(FloatingResultPanelControllerTest, ShowsAPanelThatDoesNotActivate)
{
    QCursor::setPos(100, 100);
    controller.viewModel().setTaskTitle(u"Translate → English"_s);
    controller.show(Position::nearMouse);
    ASSERT_NE(panel(), nullptr);
    EXPECT_TRUE(controller.isVisible());
    EXPECT_EQ(panel()->pos(), QPoint(112, 112));
    EXPECT_TRUE(panel()->testAttribute(Qt::WA_ShowWithoutActivating));
    EXPECT_EQ(panel()->accessibleName(), u"Translate → English"_s);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(panel())->role(), QAccessible::Dialog);
    ASSERT_FALSE(panelWindow.panels().empty());
    EXPECT_TRUE(mouse.isMonitoring());
}

TEST_F(FloatingResultPanelControllerTest, GoesToThePointerThatTheDesktopTellsOf)
{
    QCursor::setPos(100, 100);
    panelWindow.setPointer(QPoint(40, 60));
    awaited(controller.locatePointer());
    controller.show(Position::nearMouse);
    EXPECT_EQ(panel()->pos(), QPoint(52, 72));

    controller.show(Position::nearMouse);
    EXPECT_EQ(panel()->pos(), QPoint(112, 112)) << "an old answer is none";
    panelWindow.setPointer(std::nullopt);
    awaited(controller.locatePointer());
    controller.show(Position::nearMouse);
    EXPECT_EQ(panel()->pos(), QPoint(112, 112));
}

TEST_F(FloatingResultPanelControllerTest, GoesWithTheKeyboardWherePressesCanBeUnseen)
{
    const auto loseKeyboard = [this] {
        QEvent event(QEvent::WindowDeactivate);
        QCoreApplication::sendEvent(panel(), &event);
        settle();
    };
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    loseKeyboard();
    EXPECT_TRUE(controller.isVisible()) << "a press elsewhere would have been told";

    mouse.setSeesEveryPress(false);
    QMenu menu;
    menu.popup(QPoint(0, 0));
    loseKeyboard();
    EXPECT_TRUE(controller.isVisible()) << "the keyboard went to a menu";
    menu.hide();
    controller.setStatusMenu(FloatingResultPanelController::StatusMenu::open);
    loseKeyboard();
    EXPECT_TRUE(controller.isVisible()) << "the keyboard went to the status menu";
    controller.setStatusMenu(FloatingResultPanelController::StatusMenu::closed);
    loseKeyboard();
    EXPECT_FALSE(controller.isVisible());
}

TEST_F(FloatingResultPanelControllerTest, IsMadeAPanelBeforeItIsShown)
{
    controller.prepare();
    EXPECT_FALSE(controller.isVisible());
    EXPECT_EQ(panelWindow.panels().size(), 1U);
    EXPECT_FALSE(mouse.isMonitoring());
    settle();
    EXPECT_TRUE(controller.viewModel().taskTitle().isEmpty()) << "a rehearsal leaves nothing behind";
    EXPECT_TRUE(controller.viewModel().sourceText().isEmpty());
    EXPECT_FALSE(controller.viewModel().translationLanguage().has_value());
    EXPECT_FALSE(controller.viewModel().polishMode().has_value());
    EXPECT_TRUE(std::holds_alternative<FloatingResultViewModel::Loading>(controller.viewModel().phase()));
    EXPECT_TRUE(panelWindow.announcements().isEmpty());
}

TEST_F(FloatingResultPanelControllerTest, LeavesATaskAloneThatWasFasterThanItsPreparation)
{
    controller.viewModel().setTaskTitle(u"Summary"_s);
    controller.viewModel().setSourceText(u"Hola"_s);
    controller.prepare();
    EXPECT_EQ(controller.viewModel().taskTitle(), u"Summary"_s);
    EXPECT_EQ(controller.viewModel().sourceText(), u"Hola"_s);
    controller.show(Position::nearMouse);
    controller.prepare();
    EXPECT_TRUE(mouse.isMonitoring());
}

TEST_F(FloatingResultPanelControllerTest, StaysWhereItWasMovedWhenAskedTo)
{
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    panel()->move(300, 200);
    controller.show(Position::keep);
    EXPECT_EQ(panel()->pos(), QPoint(300, 200));
    controller.hide();
    controller.show(Position::keep);
    EXPECT_EQ(panel()->pos(), QPoint(112, 112));
}

TEST_F(FloatingResultPanelControllerTest, GrowsDownwardsWithItsContentInOneStep)
{
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    const QRect before = panel()->geometry();
    controller.viewModel().setSourceText(u"Hola"_s);
    controller.viewModel().setPhase(FloatingResultViewModel::Success{u"line\n"_s.repeated(8)});
    EXPECT_EQ(panel()->geometry(), before);
    settle();
    EXPECT_EQ(panel()->pos(), before.topLeft());
    EXPECT_GT(panel()->height(), before.height());
}

TEST_F(FloatingResultPanelControllerTest, KeepsItsPlaceWhileAWindowManagerTakesItOver)
{
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    panel()->move(0, 0); // where frames are made before they are put into their places
    controller.viewModel().setPhase(FloatingResultViewModel::Success{u"line\n"_s.repeated(8)});
    settle();
    EXPECT_EQ(panel()->pos(), QPoint(112, 112));
    // Later it is the user who moves it.
    passTime(600);
    panel()->move(300, 200);
    controller.viewModel().setPhase(FloatingResultViewModel::Loading{});
    settle();
    EXPECT_EQ(panel()->pos(), QPoint(300, 200));
}

TEST_F(FloatingResultPanelControllerTest, HidesOnAClickElsewhereOnly)
{
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    QCursor::setPos(panel()->geometry().center());
    mouse.pressAt(QCursor::pos());
    settle();
    EXPECT_TRUE(controller.isVisible());
    QCursor::setPos(visible.bottomRight());
    mouse.pressAt(QCursor::pos());
    settle();
    EXPECT_FALSE(controller.isVisible());
    EXPECT_FALSE(mouse.isMonitoring());
}

TEST_F(FloatingResultPanelControllerTest, TakesAClickOnWhatCoversItForOneInside)
{
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    QWidget cover;
    cover.setGeometry(panel()->geometry());
    cover.show();
    cover.raise();
    const QPoint inside = panel()->geometry().center();
    ASSERT_EQ(QApplication::topLevelAt(inside), &cover);
    QCursor::setPos(inside);
    mouse.pressAt(inside);
    settle();
    EXPECT_TRUE(controller.isVisible());
}

TEST_F(FloatingResultPanelControllerTest, HidesOnAClickInATitledWindowOfOurs)
{
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    QWidget settingsWindow;
    settingsWindow.setGeometry(550, 400, 100, 60);
    settingsWindow.show();
    const QPoint inside = settingsWindow.geometry().center();
    ASSERT_EQ(QApplication::topLevelAt(inside), &settingsWindow);
    QCursor::setPos(inside);
    mouse.pressAt(inside);
    settle();
    EXPECT_FALSE(controller.isVisible());
}

TEST_F(FloatingResultPanelControllerTest, StaysWhileAMenuOfOursIsClicked)
{
    QCursor::setPos(100, 100);
    controller.show(Position::nearMouse);
    QCursor::setPos(visible.bottomRight());
    controller.setStatusMenu(FloatingResultPanelController::StatusMenu::open);
    mouse.pressAt(QCursor::pos());
    settle();
    EXPECT_TRUE(controller.isVisible());
    controller.setStatusMenu(FloatingResultPanelController::StatusMenu::closed);
    {
        QMenu menu;
        menu.addAction(u"Row"_s);
        menu.popup(QPoint(10, 10));
        mouse.pressAt(QCursor::pos());
        settle();
        EXPECT_TRUE(controller.isVisible());
        // The menu takes the press first, and is gone when it is heard of.
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(900, 500), QPointF(900, 500), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&menu, &press);
        ASSERT_FALSE(menu.isVisible());
        mouse.pressAt(QCursor::pos());
        settle();
        EXPECT_TRUE(controller.isVisible());
    }
    passTime(120); // another press
    mouse.pressAt(QCursor::pos());
    settle();
    EXPECT_FALSE(controller.isVisible());
}

TEST_F(FloatingResultPanelControllerTest, GivesTheStatusMenuTimeToOpenAfterAClickOnADock)
{
    panelWindow.setDockHeight(30);
    const auto clickDock = [this] {
        controller.show(Position::nearMouse);
        QCursor::setPos(visible.bottomRight() - QPoint(40, 10));
        mouse.pressAt(QCursor::pos());
        settle();
        EXPECT_TRUE(controller.isVisible());
    };
    QCursor::setPos(100, 100);
    clickDock();
    controller.setStatusMenu(FloatingResultPanelController::StatusMenu::open);
    passTime(400);
    EXPECT_TRUE(controller.isVisible());
    controller.setStatusMenu(FloatingResultPanelController::StatusMenu::closed);
    clickDock();
    EXPECT_TRUE(goes()) << "no menu came";
}

TEST_F(FloatingResultPanelControllerTest, LeavesDocksOut)
{
    panelWindow.setDockHeight(50);
    QCursor::setPos(visible.bottomRight());
    controller.show(Position::nearMouse);
    EXPECT_EQ(panel()->y() + panel()->height(), visible.y() + visible.height() - 50 - 8);
}

TEST_F(FloatingResultPanelControllerTest, TellsScreenReadersWhatIsNew)
{
    controller.viewModel().setPhase(FloatingResultViewModel::Loading{});
    controller.show(Position::nearMouse);
    settle();
    EXPECT_TRUE(panelWindow.announcements().isEmpty());
    controller.viewModel().setPhase(FloatingResultViewModel::Success{u"Hello"_s});
    settle();
    controller.viewModel().setStatusMessage(u"copied"_s);
    settle();
    controller.viewModel().setStatusMessage(std::nullopt);
    controller.viewModel().setPhase(FloatingResultViewModel::Failure{u"broken"_s});
    settle();
    EXPECT_EQ(panelWindow.announcements(), QStringList({u"Hello"_s, u"copied"_s, u"broken"_s}));
    controller.hide();
    controller.viewModel().setPhase(FloatingResultViewModel::Success{u"late"_s});
    settle();
    EXPECT_EQ(panelWindow.announcements().size(), 3) << "nobody is told of what is hidden";
}

TEST_F(FloatingResultPanelControllerTest, ShowsALateAnswerWhenItIsShownAgain)
{
    controller.viewModel().setSourceText(u"Hola"_s);
    controller.show(Position::nearMouse);
    controller.hide();
    controller.viewModel().setPhase(FloatingResultViewModel::Success{u"late"_s});
    settle();
    EXPECT_FALSE(controller.isVisible());
    controller.show(Position::keep);
    EXPECT_EQ(panel()->findChildren<AdaptiveTextScrollView *>().at(1)->content(), u"late"_s);
}

TEST_F(FloatingResultPanelControllerTest, HasNothingMoveForWhomMotionIsTooMuch)
{
    controller.show(Position::nearMouse);
    EXPECT_TRUE(panel()->findChild<Spinner *>()->isSpinning());
    controller.hide();
    panelWindow.setReducesMotion(true);
    controller.show(Position::nearMouse);
    EXPECT_FALSE(panel()->findChild<Spinner *>()->isSpinning());
    EXPECT_TRUE(panel()->findChild<Spinner *>()->isVisible());
    controller.hide();
    panelWindow.setReducesMotion(false);
    controller.show(Position::nearMouse);
    EXPECT_TRUE(panel()->findChild<Spinner *>()->isSpinning());
}

TEST_F(FloatingResultPanelControllerTest, EscapeClosesIt)
{
    controller.show(Position::nearMouse);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(panel()->findChildren<AdaptiveTextScrollView *>().at(1), &escape);
    EXPECT_FALSE(controller.isVisible());
    EXPECT_FALSE(mouse.isMonitoring());
}

TEST_F(FloatingResultPanelControllerTest, ClosesByItsOwnButton)
{
    controller.show(Position::nearMouse);
    controller.viewModel().onClose();
    EXPECT_FALSE(controller.isVisible());
    EXPECT_FALSE(mouse.isMonitoring());
}

TEST_F(FloatingResultPanelControllerTest, StaysInsideTheVisibleFrame)
{
    QCursor::setPos(visible.bottomRight());
    controller.show(Position::nearMouse);
    EXPECT_EQ(panel()->x() + panel()->width(), visible.x() + visible.width() - 8);
    EXPECT_EQ(panel()->y() + panel()->height(), visible.y() + visible.height() - 8);
    controller.viewModel().setPhase(FloatingResultViewModel::Success{u"line\n"_s.repeated(12)});
    settle();
    EXPECT_EQ(panel()->y() + panel()->height(), visible.y() + visible.height() - 8);
}

} // namespace
} // namespace orvesa
