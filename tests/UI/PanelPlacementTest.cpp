#include "UI/PanelPlacement.h"

#include <gtest/gtest.h>

namespace orvesa {
namespace {

using PanelPlacement::nearPointer;
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
