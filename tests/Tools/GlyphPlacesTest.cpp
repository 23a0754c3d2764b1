// Which ink belongs to which glyph, although the engine's boxes are only roughly right.

#include "Tools/Recognition/GlyphPlaces.h"

#include <gtest/gtest.h>

namespace orvesa {

namespace {

GrayImage inkAt(const std::vector<Span> &spans, int width)
{
    GrayImage image(width, 10, 255);
    for (const Span &span : spans) {
        for (int y = 2; y < 8; ++y) {
            for (int x = span.begin; x <= span.end; ++x) {
                image.at(x, y) = 0;
            }
        }
    }
    return image;
}

Glyph glyph(const QString &text, int middle)
{
    return {.text = text, .box = QRect(middle - 2, 0, 5, 10), .confidence = 90, .wordConfidence = 90};
}

} // namespace

TEST(GlyphPlaces, GivesStrokesThatDoNotTouchToOneCharacter)
{
    // Two squares, the first of three separate strokes.
    const GrayImage image = inkAt({{10, 14}, {16, 20}, {22, 28}, {32, 50}}, 60);
    const ReadLine line{{glyph(QStringLiteral("川"), 18), glyph(QStringLiteral("田"), 44)}};
    const std::vector<Span> places = glyphPlaces(line, image, 20);
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(places[0], (Span{10, 28}));
    EXPECT_EQ(places[1], (Span{32, 50}));
}

TEST(GlyphPlaces, DoesNotTrustPlacesThatAreFarOff)
{
    const GrayImage image = inkAt({{10, 28}, {32, 50}, {54, 57}, {76, 94}}, 110);
    const ReadLine line{{glyph(QStringLiteral("以"), 19), glyph(QStringLiteral("後"), 56),
                         glyph(QStringLiteral("，"), 66), glyph(QStringLiteral("街"), 85)}};
    const std::vector<Span> places = glyphPlaces(line, image, 20);
    EXPECT_EQ(places[1], (Span{32, 50}));
    EXPECT_EQ(places[2], (Span{54, 57}));
}

TEST(GlyphPlaces, DividesLettersThatTouch)
{
    const GrayImage image = inkAt({{10, 33}}, 44);
    const ReadLine line{{glyph(QStringLiteral("a"), 15), glyph(QStringLiteral("b"), 27)}};
    const std::vector<Span> places = glyphPlaces(line, image, 20);
    EXPECT_EQ(places[0], (Span{10, 21}));
    EXPECT_EQ(places[1], (Span{22, 33}));
}

TEST(GlyphPlaces, FallsBackToTheEnginesBoxes)
{
    const ReadLine line{{glyph(QStringLiteral("a"), 15)}};
    EXPECT_EQ(glyphPlaces(line, GrayImage(40, 10, 255), 20).front(), (Span{13, 17}));
}

} // namespace orvesa
