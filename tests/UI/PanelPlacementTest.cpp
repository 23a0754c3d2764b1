#include "UI/PanelPlacement.h"

#include <gtest/gtest.h>

namespace orvesa {
namespace {

using PanelPlacement::nearPointer;
using PanelPlacement::ownScreen;
using PanelPlacement::refitted;
using PanelPlacement::Screen;
using PanelPlacement::Screens;

const Screen primary{QRect(0, 0, 1280, 900), QRect(0, 24, 1280, 836)};
const Screen leftOfPrimary{QRect(-1920, -200, 1920, 1080), QRect(-1920, -200, 1920, 1080)};
const Screens one{{primary}, 0};
const Screens two{{primary, leftOfPrimary}, 0};

TEST(PanelPlacement, OpensRightOfAndBelowThePointer)
{
    EXPECT_EQ(nearPointer({100, 200}, {420, 300}, one), QPoint(112, 212));
}

TEST(PanelPlacement, StaysInsideAtTheBottomRightCorner)
{
    const QPoint origin = nearPointer({1279, 899}, {420, 300}, one);
    EXPECT_EQ(origin.x() + 420, 1280 - 8);
    EXPECT_EQ(origin.y() + 300, 24 + 836 - 8);
}

TEST(PanelPlacement, StaysInsideAtTheTopLeftCorner)
{
    const QPoint origin = nearPointer({-1920, -200}, {420, 300}, two);
    EXPECT_EQ(origin, QPoint(-1908, -188));
    const Screen docked{QRect(0, 0, 1280, 900), QRect(60, 40, 1220, 860)};
    EXPECT_EQ(nearPointer({0, 0}, {420, 300}, {{docked}, 0}), QPoint(68, 48));
}

TEST(PanelPlacement, StaysInsideAtTheTwoOtherCorners)
{
    EXPECT_EQ(nearPointer({1279, 0}, {420, 300}, one), QPoint(1280 - 420 - 8, 24 + 8));
    EXPECT_EQ(nearPointer({0, 899}, {420, 300}, one), QPoint(12, 24 + 836 - 300 - 8));
}

TEST(PanelPlacement, BelongsToTheScreenThatHoldsMostOfIt)
{
    EXPECT_EQ(ownScreen({-400, 100, 420, 300}, two)->frame, leftOfPrimary.frame);
    EXPECT_EQ(ownScreen({-100, 100, 420, 300}, two)->frame, primary.frame);
    EXPECT_EQ(ownScreen({5000, 100, 420, 300}, two)->frame, primary.frame) << "the main one when its own has gone";
    EXPECT_FALSE(ownScreen({0, 0, 420, 300}, {}).has_value());
}

TEST(PanelPlacement, OpensOnTheScreenUnderThePointer)
{
    const QPoint origin = nearPointer({-5, 100}, {420, 300}, two);
    EXPECT_EQ(origin, QPoint(0 - 420 - 8, 112));
}

TEST(PanelPlacement, UsesTheMainScreenWhenThePointerIsOnNone)
{
    const QPoint origin = nearPointer({5000, 5000}, {420, 300}, two);
    EXPECT_EQ(origin, QPoint(1280 - 420 - 8, 24 + 836 - 300 - 8));
}

TEST(PanelPlacement, KeepsTheProposedPlaceWithoutAnyScreen)
{
    EXPECT_EQ(nearPointer({50, 60}, {420, 300}, {}), QPoint(62, 72));
}

TEST(PanelPlacement, PutsAPanelLargerThanTheScreenFlushWithTheRightAndTopMargins)
{
    const QPoint origin = nearPointer({600, 400}, {1500, 1000}, one);
    EXPECT_EQ(origin.x() + 1500, 1280 - 8);
    EXPECT_EQ(origin.y(), 24 + 8);
}

TEST(PanelPlacement, StaysInsideInEveryCornerOfEveryScreen)
{
    // A laptop at scale 2 left of and above a large screen, a portrait screen right of it with docks left and below.
    const Screens screens{{primary,
                           {QRect(-960, -600, 960, 600), QRect(-960, -570, 960, 570)},
                           {QRect(1280, -300, 1080, 1920), QRect(1344, -300, 1016, 1872)}},
                          0};
    const QSize panel(420, 300);
    for (const Screen &screen : screens.all) {
        const QRect inside = screen.visibleFrame.adjusted(8, 8, -8, -8);
        for (const QPoint corner : {screen.frame.topLeft(), screen.frame.topRight(), screen.frame.bottomLeft(),
                                    screen.frame.bottomRight(), screen.frame.center()}) {
            const QRect placed(nearPointer(corner, panel, screens), panel);
            EXPECT_TRUE(inside.contains(placed)) << corner.x() << ", " << corner.y();
        }
    }
}

TEST(PanelPlacement, IgnoresRoundingOfTheSize)
{
    using PanelPlacement::needsNewFrame;
    EXPECT_FALSE(needsNewFrame({420, 300}, {420, 300.4}));
    EXPECT_FALSE(needsNewFrame({420, 300}, {419.5, 300.5}));
    EXPECT_TRUE(needsNewFrame({420, 300}, {420, 300.6}));
    EXPECT_TRUE(needsNewFrame({420, 300}, {421, 300}));
}

TEST(PanelPlacement, GrowsDownwardsFromItsTopEdge)
{
    EXPECT_EQ(refitted(QRect(100, 100, 420, 180), {520, 400}, primary), QRect(100, 100, 520, 400));
}

TEST(PanelPlacement, IsPushedUpWhenItGrowsOverTheBottomMargin)
{
    const QRect frame = refitted(QRect(100, 600, 420, 180), {420, 500}, primary);
    EXPECT_EQ(frame.y() + frame.height(), 24 + 836 - 8);
}

TEST(PanelPlacement, KeepsItsPlaceWithoutAScreen)
{
    EXPECT_EQ(refitted(QRect(3000, 3000, 420, 180), {420, 500}, std::nullopt), QRect(3000, 3000, 420, 500));
}

} // namespace
} // namespace orvesa
