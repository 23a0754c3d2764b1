#include "Platform/linux/KWinPointer.h"

#include "Platform/AdoptedDesktop.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::processEventsFor;
using desktop::waitUntil;
using tests::AdoptedDesktop;

namespace {

desktop::DesktopOptions busOnly()
{
    desktop::DesktopOptions options;
    options.windowManager = desktop::WindowManager::none;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    return options;
}

/// A bus on which no KWin is: what its script would say is said by the tests.
class KWinPointerTest : public ::testing::Test {
protected:
    struct Answer {
        int question = 0;
        std::optional<QPointF> place;
        bool operator==(const Answer &) const = default;
    };

    QCoro::Task<void> ask(int question)
    {
        const std::optional<QPointF> place = co_await m_pointer->place();
        m_answers.push_back({question, place});
    }

    void awaitAnswers(std::size_t count)
    {
        waitUntil([this, count] { return m_answers.size() == count; }, u"the answers"_s);
    }

    AdoptedDesktop m_desktop{busOnly()};
    std::unique_ptr<KWinPointer> m_pointer = std::make_unique<KWinPointer>();
    std::vector<Answer> m_answers;
};

TEST_F(KWinPointerTest, AnswersOnceWhenTwoPlacesComeTogether)
{
    m_pointer->at(1, 1, 4, 4); // nobody has asked
    (void)ask(1);
    (void)ask(2);
    m_pointer->at(1, 1, 0, 0);
    m_pointer->at(1, 2, 4, 4);
    m_pointer->at(3, 3, 4, 4);
    awaitAnswers(2);
    processEventsFor(2 * KWinPointer::bound);
    EXPECT_EQ(m_answers, (std::vector<Answer>{{1, QPointF(0.25, 0.5)}, {2, QPointF(0.25, 0.5)}}));
}

TEST_F(KWinPointerTest, AnswersWhatIsUnderWayWhenNobodySaysItAndWhenItGoes)
{
    (void)ask(1);
    awaitAnswers(1);
    (void)ask(2);
    (void)ask(3);
    m_pointer.reset();
    awaitAnswers(3);
    EXPECT_EQ(m_answers, (std::vector<Answer>{{1, std::nullopt}, {2, std::nullopt}, {3, std::nullopt}}));
}

} // namespace

} // namespace orvesa
