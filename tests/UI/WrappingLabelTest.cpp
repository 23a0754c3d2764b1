#include "UI/WrappingLabel.h"

#include "UI/Style.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

class WrappingLabelTest : public testing::Test {
protected:
    /// The width in which the text's last character alone does not fit.
    int widthThatLeavesTheLastCharacter(const QString &text)
    {
        label.setText(text);
        return label.fontMetrics().horizontalAdvance(text) - 1;
    }

    WrappingLabel label{Style::controlFont()};
};

TEST_F(WrappingLabelTest, LeavesNoCharacterAloneOnTheLastLine)
{
    const QString text = u"選択したテキストをターゲット言語に翻訳します"_s;
    const int width = widthThatLeavesTheLastCharacter(text);
    const QStringList lines = label.lines(width);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_GE(label.fontMetrics().horizontalAdvance(lines.last()), width / 5);
    EXPECT_EQ(lines.join(QString()), text);
    EXPECT_EQ(label.heightForWidth(width), label.heightForWidth(width * 3 / 4)) << "two lines either way";
}

TEST_F(WrappingLabelTest, LeavesATextOfOneLineAlone)
{
    label.setText(u"Language, provider and permission preferences"_s);
    EXPECT_EQ(label.lines(1000), QStringList(label.text()));
}

TEST_F(WrappingLabelTest, KeepsTheLinesOfATextThatEndsWell)
{
    const QString line = u"選択したテキストを"_s;
    label.setText(line + line);
    EXPECT_EQ(label.lines(label.fontMetrics().horizontalAdvance(line) + 2), QStringList({line, line}));
}

TEST_F(WrappingLabelTest, BreaksAnAddressAnywhere)
{
    label.setText(QString(200, u'x'));
    EXPECT_GT(label.lines(200).size(), 1);
    EXPECT_EQ(label.lines(200).join(QString()), label.text());
}

} // namespace
} // namespace orvesa
