#include "UI/FloatingResultPanelController.h"

#include "Core/SettingsStore.h"
#include "fakes/FakeMouseMonitor.h"
#include "fakes/FakePanelWindow.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCursor>
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

TEST_F(FloatingResultPanelControllerTest, IsMadeAPanelBeforeItIsShown)
{
    controller.prepare();
    EXPECT_FALSE(controller.isVisible());
    EXPECT_EQ(panelWindow.panels().size(), 1U);
    EXPECT_FALSE(mouse.isMonitoring());
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
