#include "fakes/FakeClock.h"

#include <QCoroTask>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace orvesa {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

QCoro::Task<void> note(FakeClock &clock, std::chrono::milliseconds duration, std::string name,
                       std::vector<std::string> &log, std::stop_token stop = {})
{
    co_await clock.sleep(duration, stop);
    log.push_back(name);
}

QCoro::Task<void> noteTwice(FakeClock &clock, std::vector<std::string> &log)
{
    co_await clock.sleep(10ms);
    log.push_back("first");
    co_await clock.sleep(10ms);
    log.push_back("second at " + std::to_string(clock.now().count()));
}

TEST(FakeClock, endsSleepsInTheOrderOfTheirTimes)
{
    FakeClock clock;
    std::vector<std::string> log;
    auto late = note(clock, 30ms, "late", log);
    auto early = note(clock, 20ms, "early", log);
    auto atOnce = note(clock, 0ms, "at once", log);
    EXPECT_THAT(log, ElementsAre("at once"));
    clock.advance(19ms);
    EXPECT_EQ(clock.pendingSleeps(), 2U);
    clock.advance(11ms);
    EXPECT_THAT(log, ElementsAre("at once", "early", "late"));
    EXPECT_EQ(clock.pendingSleeps(), 0U);
    EXPECT_THAT(clock.requestedSleeps(), ElementsAre(30ms, 20ms, 0ms));
}

TEST(FakeClock, endsSleepsThatBeginWhileItMoves)
{
    FakeClock clock;
    std::vector<std::string> log;
    auto task = noteTwice(clock, log);
    clock.advance(25ms);
    EXPECT_THAT(log, ElementsAre("first", "second at 20"));
    EXPECT_EQ(clock.now(), 25ms);
}

TEST(FakeClock, endsASleepThatIsToldToStop)
{
    FakeClock clock;
    std::vector<std::string> log;
    std::stop_source stop;
    auto task = note(clock, 1h, "stopped", log, stop.get_token());
    EXPECT_TRUE(log.empty());
    stop.request_stop();
    EXPECT_THAT(log, ElementsAre("stopped"));
    EXPECT_EQ(clock.pendingSleeps(), 0U);
    auto after = note(clock, 1h, "never began", log, stop.get_token());
    EXPECT_THAT(log, ElementsAre("stopped", "never began"));
}

} // namespace
} // namespace orvesa
