#include "Platform/linux/X11Struts.h"

#include <gtest/gtest.h>

namespace orvesa {

using X11Struts::freePart;
using X11Struts::Strut;

// Two monitors side by side, the right one lower, inside a root window of 3200 x 1300.
constexpr QRect root(0, 0, 3200, 1300);
constexpr QRect leftMonitor(0, 0, 1280, 900);
constexpr QRect rightMonitor(1280, 220, 1920, 1080);

TEST(X11StrutsTest, LeavesAMonitorWithoutDocksWhole)
{
    EXPECT_EQ(freePart(leftMonitor, root, {}), leftMonitor);
}

TEST(X11StrutsTest, TakesADockFromItsMonitorAlone)
{
    const std::vector<Strut> top{{.edge = Strut::Edge::top, .width = 30, .start = 0, .end = 1279}};
    EXPECT_EQ(freePart(leftMonitor, root, top), QRect(0, 30, 1280, 870));
    EXPECT_EQ(freePart(rightMonitor, root, top), rightMonitor);
    const std::vector<Strut> bottom{{.edge = Strut::Edge::bottom, .width = 40, .start = 1280, .end = 3199}};
    EXPECT_EQ(freePart(rightMonitor, root, bottom), QRect(1280, 220, 1920, 1040));
    EXPECT_EQ(freePart(leftMonitor, root, bottom), leftMonitor);
}

TEST(X11StrutsTest, CountsFromTheEdgeOfTheWholeDesktop)
{
    // A dock below the left monitor, which ends 400 above the desktop's lower edge.
    const std::vector<Strut> bottom{{.edge = Strut::Edge::bottom, .width = 400 + 36, .start = 0, .end = 1279}};
    EXPECT_EQ(freePart(leftMonitor, root, bottom), QRect(0, 0, 1280, 864));
    // One at the left of the right monitor reaches there through all of the left one, which it leaves alone.
    const std::vector<Strut> left{{.edge = Strut::Edge::left, .width = 1280 + 64, .start = 220, .end = 1299}};
    EXPECT_EQ(freePart(rightMonitor, root, left), QRect(1344, 220, 1856, 1080));
    EXPECT_EQ(freePart(leftMonitor, root, left), leftMonitor);
}

TEST(X11StrutsTest, AddsDocksUp)
{
    const std::vector<Strut> both{{.edge = Strut::Edge::right, .width = 50, .start = 220, .end = 1299},
                                  {.edge = Strut::Edge::top, .width = 250, .start = 1280, .end = 3199},
                                  {.edge = Strut::Edge::top, .width = 240, .start = 1280, .end = 3199}};
    EXPECT_EQ(freePart(rightMonitor, root, both), QRect(1280, 250, 1870, 1050));
}

} // namespace orvesa
