#include "UI/ResultMetrics.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

using Model = FloatingResultViewModel;
using ResultMetrics::panelWidth;

TEST(ResultMetrics, IsWideForALongSource)
{
    EXPECT_EQ(panelWidth(QString(301, u'x'), Model::Loading{}), 520);
    EXPECT_EQ(panelWidth(QString(300, u'x'), Model::Loading{}), 420);
}

TEST(ResultMetrics, IsWideForALongResult)
{
    EXPECT_EQ(panelWidth(QString(10, u'x'), Model::Success{QString(300, u'y')}), 420);
    EXPECT_EQ(panelWidth(QString(10, u'x'), Model::Success{QString(301, u'y')}), 520);
    EXPECT_EQ(panelWidth(QString(10, u'x'), Model::Success{QString(1000000, u'y')}), 520);
}

TEST(ResultMetrics, IsNotWideForALongFailure)
{
    EXPECT_EQ(panelWidth(QString(10, u'x'), Model::Failure{QString(900, u'y')}), 420);
}

TEST(ResultMetrics, CountsUserPerceivedCharacters)
{
    const QString family = u"👨‍👩‍👧‍👦"_s;
    EXPECT_EQ(panelWidth(family.repeated(300), Model::Loading{}), 420);
    EXPECT_EQ(panelWidth(family.repeated(301), Model::Loading{}), 520);
    EXPECT_EQ(panelWidth(u"e\u0301"_s.repeated(300), Model::Loading{}), 420);
    // One character with a very long tail of marks is still one character.
    EXPECT_EQ(panelWidth(u"a"_s + QString(40000, QChar(0x0301)), Model::Loading{}), 420);
}

TEST(ResultMetrics, LimitsTheTextsByTheScreen)
{
    EXPECT_EQ(ResultMetrics::maximumSourceHeight(800), 144);
    EXPECT_EQ(ResultMetrics::maximumResultHeight(800), 360);
    EXPECT_EQ(ResultMetrics::maximumSourceHeight(1200), 200);
    EXPECT_EQ(ResultMetrics::maximumResultHeight(1200), 480);
}

TEST(ResultMetrics, ShowsATextAsHighAsItIsWithinBounds)
{
    EXPECT_EQ(ResultMetrics::displayedTextHeight(0, 200), 20);
    EXPECT_EQ(ResultMetrics::displayedTextHeight(30.2, 200), 39);
    EXPECT_EQ(ResultMetrics::displayedTextHeight(500, 200), 200);
}

} // namespace
} // namespace orvesa
