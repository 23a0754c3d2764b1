// The panel on several monitors: where it opens, and what becomes of it when one goes.

#include "desktop/Monitors.h"
#include "desktop/PanelFixture.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ProgramMonitors : public PanelFixture, public ::testing::WithParamInterface<WindowManager> {
protected:
    /// The second monitor stands left of the primary one and reaches higher.
    static constexpr QRect primary{1024, 200, 1280, 900};
    static constexpr QRect second{0, 0, 1024, 768};
    static constexpr int margin = 8;

    void showOnMonitors(const std::vector<QRect> &places, const QMap<QString, QString> &environment = {})
    {
        DesktopOptions options;
        options.windowManager = GetParam();
        options.server = Server::monitors;
        options.environment = environment;
        setUp(options);
        monitors = std::make_unique<Monitors>(*desktop);
        monitors->arrange(places);
        service.setResponder([](const service::ServiceRequest &) { return answer(u"The house is big."_s); });
        startOver(u"La casa es grande."_s);
    }

    /// Presses the shortcut with the pointer there; the panel's area with the answer in it.
    QRect showAt(const QPoint &pointer)
    {
        desktop->windows().focus(editor->window());
        editor->selectAll();
        const QPoint before = panel != 0 ? frame().topLeft() : QPoint();
        desktop->pointer().moveTo(pointer);
        EXPECT_EQ(desktop->pointer().position(), pointer);
        pressTranslate();
        panel = program->awaitPanel();
        awaitResultWith(u"house"_s);
        EXPECT_TRUE(happensWithin(usualDeadline, [&] { return frame().topLeft() != before; }));
        EXPECT_TRUE(staysShown());
        return frame();
    }

    void close()
    {
        ASSERT_TRUE(control(u"Close"_s).doAction());
        awaitHidden();
    }

    std::unique_ptr<Monitors> monitors;
};

INSTANTIATE_TEST_SUITE_P(Managers, ProgramMonitors, ::testing::Values(WindowManager::openbox, WindowManager::xfwm4),
                         [](const auto &parameter) {
                             return parameter.param == WindowManager::openbox ? "openbox" : "xfwm4";
                         });

TEST_P(ProgramMonitors, OpensOnTheOneUnderThePointerAndStaysInsideIt)
{
    showOnMonitors({primary, second});
    const QRect onSecond = showAt(second.bottomRight() - QPoint(3, 3));
    EXPECT_EQ(onSecond.x() + onSecond.width(), second.x() + second.width() - margin);
    EXPECT_TRUE(second.adjusted(margin, margin, -margin, -margin).contains(onSecond));
    close();
    const QPoint corner = primary.topLeft() + QPoint(20, 30);
    const QRect onPrimary = showAt(corner);
    EXPECT_EQ(onPrimary.topLeft(), corner + QPoint(12, 12));
    EXPECT_EQ(onPrimary.size(), onSecond.size());
    // While it is shown, the shortcut brings it over.
    const QRect again = showAt(QPoint(500, 100));
    EXPECT_EQ(again.topLeft(), QPoint(512, 112));
}

TEST_P(ProgramMonitors, ComesBackWhenItsOwnIsUnplugged)
{
    const QRect left(0, 0, 1280, 900);
    const QRect right(1280, 100, 1024, 768);
    showOnMonitors({left, right});
    const QRect before = showAt(QPoint(1600, 400));
    ASSERT_TRUE(right.contains(before));
    monitors->arrange({left});
    const QRect inside = left.adjusted(margin, margin, -margin, -margin);
    EXPECT_TRUE(happensWithin(usualDeadline, [&] { return inside.contains(frame()); }))
        << frame().x() << ' ' << frame().y() << ' ' << frame().width() << 'x' << frame().height();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(frame().size(), before.size());
    // And one that is plugged in again, elsewhere, is used like any other.
    const QRect below(100, 900, 1024, 768);
    monitors->arrange({left, below});
    const QRect onThird = showAt(below.topRight() + QPoint(-5, 300));
    EXPECT_TRUE(below.adjusted(margin, margin, -margin, -margin).contains(onThird));
}

TEST_P(ProgramMonitors, KeepsItsSizeFromOneScaleToAnother)
{
    showOnMonitors({primary, second}, {{u"QT_SCREEN_SCALE_FACTORS"_s, u"DUMMY0=1;DUMMY1=2"_s}});
    const QRect onPrimary = showAt(primary.center());
    EXPECT_EQ(onPrimary.topLeft(), primary.center() + QPoint(12, 12));
    close();
    for (int time = 0; time < 3; ++time) {
        const QRect onSecond = showAt(QPoint(100, 100));
        EXPECT_EQ(onSecond.topLeft(), QPoint(124, 124));
        EXPECT_EQ(onSecond.width(), 2 * onPrimary.width());
        EXPECT_TRUE(second.contains(onSecond));
        close();
        const QRect again = showAt(primary.center());
        EXPECT_EQ(again, onPrimary) << "after time " << time;
        close();
    }
}

} // namespace orvesa::desktop
