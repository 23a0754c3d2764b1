#include "Platform/macos/MessagePortSingleInstance.h"

#include "macos/RecorderTest.h"
#include "macos/recorders/MessagePorts.h"

namespace orvesa {

using namespace Qt::StringLiterals;
using Claim = SingleInstancePort::Claim;

namespace {

const QString identifier = u"com.example.test"_s;
const QString port = u"com.example.test.instance"_s;

class MessagePortSingleInstanceTest : public tests::RecorderTest {
protected:
    ~MessagePortSingleInstanceTest() override
    {
        recorders::releasePortsElsewhere();
        recorders::setPortsAvailable(true);
        recorders::setAnswering(true);
    }

    [[nodiscard]] SingleInstancePort::Handlers handlers()
    {
        return {.activate = [this] { ++m_activations; },
                .perform = [this](const QString &action) { m_performed.append(action); },
                .heldShortcuts = [this] { return m_held; }};
    }

    MessagePortSingleInstance m_instance;
    int m_activations = 0;
    QStringList m_performed;
    QList<quint32> m_held;
};

} // namespace

TEST_F(MessagePortSingleInstanceTest, ServesWhatAnotherProcessAsks)
{
    EXPECT_EQ(m_instance.claim(identifier, handlers()), Claim::owned);
    EXPECT_TRUE(recorders::isServed(port));
    MessagePortSingleInstance other;
    EXPECT_TRUE(other.ask(identifier, QString()));
    EXPECT_TRUE(other.ask(identifier, u"prompt:要約"_s));
    EXPECT_EQ(m_activations, 1);
    EXPECT_EQ(m_performed, (QStringList{u"prompt:要約"_s}));
    EXPECT_EQ(recorders::calls().back(), "CFMessagePortSendRequest within 2 s, waits");
}

TEST_F(MessagePortSingleInstanceTest, TellsWhichShortcutsItHolds)
{
    EXPECT_EQ(m_instance.heldShortcuts(identifier), std::nullopt);
    EXPECT_EQ(m_instance.claim(identifier, handlers()), Claim::owned);
    MessagePortSingleInstance other;
    EXPECT_EQ(other.heldShortcuts(identifier), QList<quint32>());
    m_held = {1, 3, 1002};
    EXPECT_EQ(other.heldShortcuts(identifier), (QList<quint32>{1, 3, 1002}));
}

TEST_F(MessagePortSingleInstanceTest, GivesItsPlaceUpWhenItGoes)
{
    {
        MessagePortSingleInstance first;
        EXPECT_EQ(first.claim(identifier, handlers()), Claim::owned);
    }
    EXPECT_FALSE(recorders::isServed(port));
    EXPECT_FALSE(m_instance.ask(identifier, QString()));
    EXPECT_EQ(m_instance.claim(identifier, handlers()), Claim::owned);
}

TEST_F(MessagePortSingleInstanceTest, KnowsThatAnotherProcessRuns)
{
    recorders::claimPortElsewhere(port);
    EXPECT_EQ(m_instance.claim(identifier, handlers()), Claim::runsAlready);
    EXPECT_TRUE(m_instance.ask(identifier, u"translateSelection"_s));
    EXPECT_EQ(recorders::lastRequest(), "translateSelection");
}

TEST_F(MessagePortSingleInstanceTest, SaysWhenNobodyAnswers)
{
    EXPECT_FALSE(m_instance.ask(identifier, QString()));
    recorders::claimPortElsewhere(port);
    recorders::setAnswering(false);
    EXPECT_FALSE(m_instance.ask(identifier, QString()));
}

TEST_F(MessagePortSingleInstanceTest, RunsWithoutPorts)
{
    recorders::setPortsAvailable(false);
    EXPECT_EQ(m_instance.claim(identifier, handlers()), Claim::unavailable);
}

} // namespace orvesa
