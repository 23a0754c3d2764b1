// Choosing a rectangle by pointer and keyboard, and where its label goes.

#include "Tools/Capture/LabelPlacement.h"
#include "Tools/Capture/RectangleSelection.h"

#include <gtest/gtest.h>

namespace orvesa {

namespace {

using State = RectangleSelection::State;
using Step = RectangleSelection::Step;

constexpr QSize screen(1000, 800);

} // namespace

TEST(RectangleSelection, TakesWhatWasDraggedInAnyDirection)
{
    for (const auto &[from, to] :
         {std::pair(QPoint(100, 200), QPoint(300, 260)), std::pair(QPoint(300, 260), QPoint(100, 200)),
          std::pair(QPoint(300, 200), QPoint(100, 260))}) {
        RectangleSelection selection(screen, 1);
        selection.press(from);
        selection.moveTo({150, 230});
        EXPECT_EQ(selection.state(), State::choosing);
        selection.release(to);
        EXPECT_EQ(selection.state(), State::taken);
        EXPECT_EQ(selection.rectangle(), QRect(100, 200, 200, 60));
    }
}

TEST(RectangleSelection, CancelsOnAPlainClick)
{
    RectangleSelection selection(screen, 1);
    selection.press({100, 200});
    selection.release({101, 200});
    EXPECT_EQ(selection.state(), State::cancelled);
}

TEST(RectangleSelection, CancelsWhatIsTooNarrow)
{
    RectangleSelection selection(screen, 1);
    selection.press({100, 200});
    selection.release({400, 201});
    EXPECT_EQ(selection.state(), State::cancelled);
}

TEST(RectangleSelection, ReachesTheLastRowAndColumn)
{
    RectangleSelection selection(screen, 1);
    selection.press({900, 700});
    selection.release({999, 799});
    EXPECT_EQ(selection.rectangle(), QRect(900, 700, 100, 100));
}

TEST(RectangleSelection, KnowsNothingBeforeThePress)
{
    RectangleSelection selection(screen, 1);
    selection.moveTo({500, 500});
    selection.release({600, 600});
    EXPECT_EQ(selection.state(), State::choosing);
    EXPECT_TRUE(selection.rectangle().isEmpty());
}

TEST(RectangleSelection, IsMadeMovedAndSizedByKeys)
{
    RectangleSelection selection(screen, 2);
    selection.moveTo({500, 400});
    selection.step({1, 0}, Step::move);
    EXPECT_EQ(selection.rectangle(), QRect(180, 280, 640, 240));
    selection.step({1, 0}, Step::move);
    EXPECT_EQ(selection.rectangle(), QRect(196, 280, 640, 240));
    selection.step({0, -1}, Step::size);
    EXPECT_EQ(selection.rectangle(), QRect(196, 280, 640, 224));
    selection.take();
    EXPECT_EQ(selection.state(), State::taken);
}

TEST(RectangleSelection, MovesUnderThePointerWhileItIsDragged)
{
    RectangleSelection selection(screen, 1);
    selection.press({100, 100});
    selection.moveTo({200, 200});
    selection.step({1, 0}, Step::move);
    EXPECT_EQ(selection.rectangle(), QRect(108, 100, 100, 100));
    selection.moveTo({210, 200});
    EXPECT_EQ(selection.rectangle(), QRect(108, 100, 110, 100));
}

TEST(RectangleSelection, StaysOnTheScreen)
{
    RectangleSelection selection(screen, 1);
    selection.press({0, 0});
    selection.moveTo({100, 100});
    selection.step({-5, -5}, Step::move);
    EXPECT_EQ(selection.rectangle(), QRect(0, 0, 100, 100));
    selection.step({1000, 1000}, Step::move);
    EXPECT_EQ(selection.rectangle(), QRect(900, 700, 100, 100));
}

TEST(RectangleSelection, TakesNothingOnReturnWithoutARectangle)
{
    RectangleSelection selection(screen, 1);
    selection.take();
    EXPECT_EQ(selection.state(), State::cancelled);
}

TEST(LabelPlacement, PrefersBelowThenAboveThenInside)
{
    const std::vector<QRect> monitors{{0, 0, 1000, 800}};
    const QSize label(80, 24);
    EXPECT_EQ(labelPlacement({100, 100, 300, 200}, label, monitors, 6), QRect(320, 306, 80, 24));
    EXPECT_EQ(labelPlacement({100, 500, 300, 290}, label, monitors, 6), QRect(320, 470, 80, 24));
    EXPECT_EQ(labelPlacement({0, 0, 1000, 800}, label, monitors, 6), QRect(914, 770, 80, 24));
}

TEST(LabelPlacement, StaysOnTheMonitorOfTheRectangle)
{
    const std::vector<QRect> monitors{{0, 0, 1000, 800}, {1000, 200, 600, 400}};
    const QRect place = labelPlacement({1005, 250, 20, 20}, {80, 24}, monitors, 6);
    EXPECT_TRUE(monitors[1].contains(place));
}

} // namespace orvesa
