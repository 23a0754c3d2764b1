#include "Platform/linux/WaylandPointer.h"

#include "Platform/AdoptedDesktop.h"

#include <gtest/gtest.h>

#include <QThread>

#include <memory>
#include <optional>
#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::processEventsFor;
using desktop::waitUntil;
using tests::AdoptedDesktop;
using tests::screenOnly;

namespace {

constexpr QPoint somewhere(300, 200);
constexpr QPoint elsewhere(700, 500);

class WaylandPointerTest : public ::testing::Test {
public:
    WaylandPointerTest()
    {
        qputenv("WAYLAND_DISPLAY", QByteArrayLiteral("wayland-9"));
        qunsetenv("XDG_CURRENT_DESKTOP");
    }
    ~WaylandPointerTest() override { qunsetenv("WAYLAND_DISPLAY"); }

protected:
    struct Answer {
        int question = 0;
        std::optional<QPoint> place;
        bool operator==(const Answer &) const = default;
    };

    /// Returns when the server has the question's window on the screen.
    void ask(int question)
    {
        (void)note(question);
        (void)m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.connection()));
    }

    void awaitAnswers(std::size_t count)
    {
        waitUntil([this, count] { return m_answers.size() == count; }, u"the answers"_s);
    }

    /// Long enough for whatever is still under way to arrive.
    static void letTheRestCome() { processEventsFor(2 * WaylandPointer::bound); }

    AdoptedDesktop m_desktop{screenOnly()};
    X11Connection m_connection;
    std::unique_ptr<WaylandPointer> m_pointer = std::make_unique<WaylandPointer>(m_connection);
    std::vector<Answer> m_answers;

private:
    QCoro::Task<void> note(int question)
    {
        const std::optional<QPoint> place = co_await m_pointer->position();
        m_answers.push_back({question, place});
    }
};

TEST_F(WaylandPointerTest, AnswersOnceWhenTwoMovesComeTogether)
{
    ask(1);
    m_desktop->pointer().moveTo(somewhere);
    m_desktop->pointer().moveTo(elsewhere);
    awaitAnswers(1);
    letTheRestCome();
    EXPECT_EQ(m_answers, (std::vector<Answer>{{1, somewhere}}));
    EXPECT_TRUE(m_desktop->windows().mapped().empty());
}

TEST_F(WaylandPointerTest, AnswersOnceWhenTheMoveAndTheBoundComeTogether)
{
    ask(1);
    m_desktop->pointer().moveTo(somewhere);
    QThread::msleep(static_cast<unsigned long>((WaylandPointer::bound * 3 / 2).count())); // neither is heard of yet
    awaitAnswers(1);
    letTheRestCome();
    EXPECT_EQ(m_answers.size(), 1U);

    ask(2);
    m_desktop->pointer().moveTo(elsewhere);
    awaitAnswers(2);
    EXPECT_EQ(m_answers.back(), (Answer{2, elsewhere}));
}

TEST_F(WaylandPointerTest, AnswersQuestionsThatAreAskedTogetherInTheirOrder)
{
    ask(1);
    ask(2);
    EXPECT_TRUE(m_answers.empty());
    EXPECT_EQ(m_desktop->windows().mapped().size(), 1U);
    m_desktop->pointer().moveTo(somewhere);
    awaitAnswers(2);
    EXPECT_EQ(m_answers, (std::vector<Answer>{{1, somewhere}, {2, somewhere}}));

    ask(3);
    ask(4);
    awaitAnswers(4);
    EXPECT_EQ(m_answers[2], (Answer{3, std::nullopt}));
    EXPECT_EQ(m_answers[3], (Answer{4, std::nullopt}));
    EXPECT_TRUE(m_desktop->windows().mapped().empty());
}

TEST_F(WaylandPointerTest, AnswersWhatIsUnderWayWhenItGoes)
{
    ask(1);
    ask(2);
    m_pointer.reset();
    awaitAnswers(2);
    EXPECT_EQ(m_answers, (std::vector<Answer>{{1, std::nullopt}, {2, std::nullopt}}));
    EXPECT_TRUE(m_desktop->windows().mapped().empty());
}

TEST_F(WaylandPointerTest, HasNoWindowThatCouldBeTakenForAFullScreenOne)
{
    ask(1);
    const std::vector<xcb_window_t> windows = m_desktop->windows().mapped();
    ASSERT_EQ(windows.size(), 1U);
    const QSize screen = m_desktop->options().screenSize;
    EXPECT_EQ(m_desktop->windows().geometry(windows.front()), QRect(QPoint(), screen - QSize(1, 1)));
    awaitAnswers(1);
}

} // namespace

} // namespace orvesa
