#include "UI/AdaptiveTextScrollView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

constexpr int width = 492;
constexpr int maximumHeight = 376;
const QString sentence = u"The library opens at nine and closes when the light goes. "_s;

/// Gives access to what a copy of the selection would hold.
QString copiedText(AdaptiveTextScrollView &view)
{
    view.copy();
    return QApplication::clipboard()->text();
}

/// Milliseconds of this thread's own work, whatever else the machine does.
double workedMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

class AdaptiveTextScrollViewTest : public testing::Test {
protected:
    void show(const QString &text)
    {
        view.setContent(text, width, maximumHeight);
        view.resize(width, view.height());
        view.show();
    }

    void complete()
    {
        while (!view.isComplete()) {
            QCoreApplication::processEvents();
        }
    }

    [[nodiscard]] int blocks() const { return view.document()->blockCount(); }

    AdaptiveTextScrollView view;
};

TEST_F(AdaptiveTextScrollViewTest, IndentsCodeByFourBlanksATab)
{
    const auto startOf = [this](const QString &text) {
        show(text);
        return view.document()->firstBlock().layout()->lineAt(0).cursorToX(static_cast<int>(text.indexOf(u'x')));
    };
    EXPECT_NEAR(startOf(u"\tx"_s), startOf(u"    x"_s), 0.5);
    EXPECT_NEAR(startOf(u"\t\tx = u\"直す\""_s), startOf(u"        x = u\"直す\""_s), 0.5) << "in another font";
}

TEST_F(AdaptiveTextScrollViewTest, IsTwentyHighWhenEmpty)
{
    show({});
    EXPECT_EQ(view.height(), 20);
    EXPECT_TRUE(view.isComplete());
}

TEST_F(AdaptiveTextScrollViewTest, IsAsHighAsItsText)
{
    show(u"one"_s);
    const int one = view.height();
    show(u"one\ntwo\nthree"_s);
    EXPECT_GT(view.height(), 2 * one);
    EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);
    show(sentence.repeated(200));
    EXPECT_EQ(view.height(), maximumHeight);
}

TEST_F(AdaptiveTextScrollViewTest, BreaksATextWithoutBlanks)
{
    show(QString(400, u'w'));
    EXPECT_GT(view.height(), 100);
    EXPECT_LE(view.document()->idealWidth(), width);
}

TEST_F(AdaptiveTextScrollViewTest, BeginsNoLineWithClosingPunctuation)
{
    // One character more in front of the same text moves every break by one.
    const QString forbidden = u"。，、！？）」』…"_s;
    for (int shift = 0; shift < 40; ++shift) {
        show(QString(shift, u'字') + u"圖書館九點開門，天色暗下來時關門。「請把書放回原處」，謝謝（您）的合作！"_s.repeated(6));
        const QString text = view.document()->firstBlock().text();
        const QTextLayout *lines = view.document()->firstBlock().layout();
        ASSERT_GT(lines->lineCount(), 4);
        for (int line = 1; line < lines->lineCount(); ++line) {
            const QChar first = text.at(lines->lineAt(line).textStart());
            EXPECT_FALSE(forbidden.contains(first)) << shift << ", line " << line;
        }
    }
}

TEST_F(AdaptiveTextScrollViewTest, GivesEachParagraphItsOwnDirection)
{
    show(u"Hello\nمرحبا بالعالم\nשלום\n你好"_s);
    QList<Qt::LayoutDirection> directions;
    for (QTextBlock block = view.document()->begin(); block.isValid(); block = block.next()) {
        directions.append(block.textDirection());
    }
    EXPECT_EQ(directions,
              (QList{Qt::LeftToRight, Qt::RightToLeft, Qt::RightToLeft, Qt::LeftToRight}));
}

TEST_F(AdaptiveTextScrollViewTest, OpensAMegabyteWithoutAPause)
{
#ifdef __SANITIZE_ADDRESS__
    constexpr double longestPause = 500;
#else
    constexpr double longestPause = 50;
#endif
    for (const QString &text : {sentence.repeated(18000), (sentence + u'\n').repeated(18000), QString(1000000, u'x'),
                                u"圖書館九點開門，天色暗下來時關門。"_s.repeated(20000)}) {
        double longest = 0;
        double begun = workedMilliseconds();
        show(text);
        while (!view.isComplete()) {
            longest = std::max(longest, workedMilliseconds() - begun);
            begun = workedMilliseconds();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        }
        EXPECT_LT(longest, longestPause);
        EXPECT_EQ(view.height(), maximumHeight);
        view.selectAll();
        EXPECT_EQ(copiedText(view), text);
    }
}

TEST_F(AdaptiveTextScrollViewTest, CopiesALongParagraphWithoutItsJoints)
{
    const QString paragraph = sentence.repeated(300);
    const QString text = paragraph + u'\n' + paragraph + u"\nend"_s;
    show(text);
    complete();
    EXPECT_GT(blocks(), 3);
    view.selectAll();
    EXPECT_EQ(copiedText(view), text);
    QTextCursor part(view.document());
    part.setPosition(5);
    part.setPosition(9, QTextCursor::KeepAnchor);
    view.setTextCursor(part);
    EXPECT_EQ(copiedText(view), text.sliced(5, 4));
}

TEST_F(AdaptiveTextScrollViewTest, CopiesEverythingThatWasSelectedBeforeItWasThere)
{
    const QString text = sentence.repeated(1000);
    show(text);
    view.selectAll();
    ASSERT_FALSE(view.isComplete());
    EXPECT_EQ(copiedText(view), text);
    complete();
    EXPECT_EQ(copiedText(view), text);
}

TEST_F(AdaptiveTextScrollViewTest, KeepsTheDirectionOfALongParagraph)
{
    // The second half of the paragraph has no letter of its own direction near its start.
    show(u"مرحبا "_s + QString(9000, u'.').replace(u"...."_s, u"... "_s) + u"\nHello"_s);
    complete();
    ASSERT_GT(blocks(), 2);
    EXPECT_EQ(view.document()->findBlockByNumber(1).textDirection(), Qt::RightToLeft);
    EXPECT_EQ(view.document()->lastBlock().textDirection(), Qt::LeftToRight);
}

TEST_F(AdaptiveTextScrollViewTest, StartsAnotherTextAtItsTop)
{
    show(sentence.repeated(500));
    complete();
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    show(sentence.repeated(400));
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
    EXPECT_EQ(view.content(), sentence.repeated(400));
}

TEST_F(AdaptiveTextScrollViewTest, GivesTextWithoutWidthTheFullHeight)
{
    show(QString(200000, QChar(0x200B)));
    EXPECT_EQ(view.height(), maximumHeight);
}

} // namespace
} // namespace orvesa
