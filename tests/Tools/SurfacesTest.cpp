// Writing comes out alike whatever the colours; frames, rules and rims do not come out at all.

#include "Tools/Recognition/Marks.h"
#include "Tools/Recognition/Regions.h"
#include "Tools/Recognition/Surfaces.h"

#include <QColor>

#include <gtest/gtest.h>

#include <algorithm>

namespace orvesa {

namespace {

void fill(QImage &image, const QRect &area, QRgb color)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            image.setPixel(x, y, color);
        }
    }
}

void outline(QImage &image, const QRect &area, QRgb color)
{
    fill(image, QRect(area.left(), area.top(), area.width(), 1), color);
    fill(image, QRect(area.left(), area.bottom(), area.width(), 1), color);
    fill(image, QRect(area.left(), area.top(), 1, area.height()), color);
    fill(image, QRect(area.right(), area.top(), 1, area.height()), color);
}

/// Strokes as letters have: bars of two by ten pixels.
Marks addStrokes(QImage &image, int x, int y, int count, QRgb color)
{
    Marks marks;
    for (int stroke = 0; stroke < count; ++stroke) {
        const QRect mark(x + stroke * 6, y, 2, 10);
        fill(image, mark, color);
        marks.push_back(mark);
    }
    return marks;
}

QImage page(QRgb color, int width = 200, int height = 100)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

Marks sorted(Marks marks)
{
    std::ranges::sort(marks, {}, [](const QRect &mark) { return std::pair(mark.top(), mark.left()); });
    return marks;
}

Marks marksOn(const QImage &image)
{
    Writing writing = writingOn(image);
    return sorted(takeMarks(writing));
}

} // namespace

TEST(Regions, JoinAcrossAWholeRing)
{
    QImage image = page(0xffffffff, 20, 20);
    outline(image, QRect(4, 4, 10, 10), 0xff000000);
    const RegionMap map = flatRegions(image, 0);
    ASSERT_EQ(map.regions.size(), 3U); // outside, ring, inside
    EXPECT_EQ(map.regions[1].box, QRect(4, 4, 10, 10));
    EXPECT_EQ(map.regions[1].pixels, 36);
    EXPECT_EQ(map.regions[2].pixels, 64);
}

TEST(Surfaces, TellInkFromEachBackground)
{
    QImage image = page(0xfff0f0f0);
    const Marks onPage = addStrokes(image, 10, 10, 5, 0xff101010);
    fill(image, QRect(20, 40, 100, 30), 0xff2050c0);
    const Marks onButton = addStrokes(image, 40, 50, 5, 0xffffffff);
    Marks expected = onPage;
    expected.insert(expected.end(), onButton.begin(), onButton.end());
    EXPECT_EQ(marksOn(image), sorted(expected));
    const Writing writing = writingOn(image);
    EXPECT_GT(writing.ink.at(40, 55), 100);
    EXPECT_EQ(writing.ink.at(30, 45), 0);
    EXPECT_EQ(writing.ink.at(5, 5), 0);
}

TEST(Surfaces, SeeWritingOfTheBackgroundsOwnBrightness)
{
    QImage image = page(qRgb(200, 60, 60));
    const Marks marks = addStrokes(image, 10, 10, 5, qRgb(60, 130, 60)); // as bright as the red around it
    EXPECT_EQ(marksOn(image), marks);
}

TEST(Surfaces, FollowAGradient)
{
    QImage image = page(0xff000000);
    for (int y = 0; y < image.height(); ++y) {
        fill(image, QRect(0, y, image.width(), 1), qRgb(100 + y, 100 + y, 150 + y));
    }
    const Marks marks = addStrokes(image, 10, 40, 6, 0xffffffff);
    EXPECT_EQ(marksOn(image), marks);
}

TEST(Surfaces, SeeWritingOnAPhotograph)
{
    QImage image = page(0xff000000, 240, 120);
    unsigned state = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            const int value = 140 + x / 4 + static_cast<int>(state >> 28U);
            image.setPixel(x, y, qRgb(value, value, value));
        }
    }
    for (int stroke = 0; stroke < 8; ++stroke) {
        fill(image, QRect(40 + stroke * 12, 40, 4, 24), qRgb(20, 20, 20));
    }
    EXPECT_EQ(marksOn(image).size(), 8U);
}

TEST(Marks, LeaveOutFramesRulesAndGrids)
{
    QImage image = page(0xffffffff);
    const Marks text = addStrokes(image, 20, 20, 8, 0xff000000);
    outline(image, QRect(10, 10, 100, 30), 0xff808080);
    fill(image, QRect(10, 60, 150, 1), 0xff000000);
    fill(image, QRect(180, 10, 1, 60), 0xff000000);
    EXPECT_EQ(marksOn(image), text);
}

TEST(Marks, LeaveOutTheRimBetweenTwoSurfaces)
{
    QImage image = page(0xffffffff);
    fill(image, QRect(20, 20, 100, 40), 0xff2050c0);
    // Rounded corners, blended.
    for (const QPoint corner : {QPoint(20, 20), QPoint(116, 20)}) {
        fill(image, QRect(corner, QSize(4, 4)), 0xff90a8e0);
    }
    const Marks text = addStrokes(image, 40, 35, 8, 0xffffffff);
    EXPECT_EQ(marksOn(image), text);
}

TEST(Marks, LeaveOutTheAntialiasedCornersOfABubble)
{
    QImage image = page(0xff1b5e20);
    fill(image, QRect(20, 20, 120, 40), 0xff004d40);
    for (const QPoint corner : {QPoint(20, 20), QPoint(138, 20), QPoint(20, 58), QPoint(138, 58)}) {
        fill(image, QRect(corner, QSize(2, 1)), 0xff125633); // between the two
    }
    const Marks text = addStrokes(image, 40, 35, 8, 0xffffffff);
    EXPECT_EQ(marksOn(image), text);
}

TEST(Marks, LeaveOutABoxToTick)
{
    QImage image = page(0xffffffff);
    outline(image, QRect(10, 18, 13, 13), 0xff808080);
    const Marks text = addStrokes(image, 32, 20, 8, 0xff000000);
    EXPECT_EQ(marksOn(image), text);
}

TEST(Marks, KeepTheIdeographThatLooksLikeABox)
{
    QImage image = page(0xffffffff);
    // As the first of several that stand close together, and as one among them.
    for (const int x : {10, 44}) {
        outline(image, QRect(x, 20, 12, 12), 0xff000000);
    }
    const Marks text = addStrokes(image, 25, 20, 3, 0xff000000);
    EXPECT_EQ(marksOn(image).size(), text.size() + 2);
}

TEST(Marks, TakeTheCursorOffTheLetterThatItTouches)
{
    QImage image = page(0xffffffff);
    const Marks text = addStrokes(image, 20, 20, 8, 0xff000000);
    const QRect first = text.front();
    fill(image, QRect(first.left() - 4, first.top() + 3, 4, 2), 0xff000000); // what reaches the cursor
    fill(image, QRect(first.left() - 5, first.top() - 3, 1, first.height() + 6), 0xff000000);
    Marks expected = text;
    expected.front() |= QRect(first.left() - 4, first.top() + 3, 4, 2);
    EXPECT_EQ(marksOn(image), expected);
}

TEST(Marks, KeepTheStemOfALargeLetter)
{
    QImage image = page(0xffffffff);
    addStrokes(image, 40, 20, 8, 0xff000000);
    fill(image, QRect(20, 10, 2, 30), 0xff000000); // a b beside smaller ones
    fill(image, QRect(22, 24, 12, 2), 0xff000000);
    fill(image, QRect(22, 38, 12, 2), 0xff000000);
    EXPECT_EQ(marksOn(image).front(), QRect(20, 10, 14, 30));
}

TEST(Marks, OfABlankPageAreNone)
{
    EXPECT_TRUE(marksOn(page(0xff1e1e1e)).empty());
}

} // namespace orvesa
