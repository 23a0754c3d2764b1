// An item of a menu bar, of programs that answer, err, or say nothing.

#include "Platform/ElementOnBusTest.h"
#include "Platform/linux/ATSPIElementHandle.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QMutex>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tests::ElementOnBusTest;

namespace {

enum class Manner { enabled, disabled, erring, silent };

/// An item of another program. It answers in a thread of its own, since whoever asks waits in this one.
class ItemOnBus final : public QDBusVirtualObject {
public:
    void setManner(Manner manner)
    {
        const QMutexLocker lock(&m_mutex);
        m_manner = manner;
    }
    /// How often it was told to do what it does.
    [[nodiscard]] int presses() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_presses;
    }
    [[nodiscard]] int messages() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_messages;
    }
    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        const QMutexLocker lock(&m_mutex);
        ++m_messages;
        m_presses += message.member() == "DoAction"_L1 ? 1 : 0;
        if (m_manner == Manner::silent) {
            return true;
        }
        if (message.member() == "DoAction"_L1) {
            return connection.send(message.createReply(true));
        }
        if (m_manner == Manner::erring) {
            return connection.send(message.createErrorReply(QDBusError::Failed, u"not now"_s));
        }
        constexpr quint32 usable =
            1U << static_cast<unsigned>(ATSPIState::enabled) | 1U << static_cast<unsigned>(ATSPIState::sensitive);
        const QList<quint32> states{m_manner == Manner::enabled ? usable : 0, 0};
        return connection.send(message.createReply(QVariant::fromValue(states)));
    }

private:
    mutable QMutex m_mutex;
    Manner m_manner = Manner::enabled;
    int m_messages = 0;
    int m_presses = 0;
};

class ATSPIMenuItemOnBusTest : public ElementOnBusTest<ItemOnBus> {
protected:
    ATSPIMenuItemOnBusTest()
        : ElementOnBusTest([](QDBusConnection &bus, const QString &path, ItemOnBus &item) {
              return bus.registerVirtualObject(path, &item);
          })
    {
    }

    [[nodiscard]] AccessibilityElement item() const
    {
        return std::make_shared<ATSPIElementHandle>(ATSPIMenuItem{.element = m_reference}, m_client);
    }
    AccessibilityValue isEnabled() { return m_elements.copyAttribute(item(), u"AXEnabled"_s); }
    bool press() { return m_elements.performAction(item(), u"AXPress"_s); }
    void useUpTheTime() { m_client = std::make_shared<ATSPIClient>(m_client->another(0ms)); }
};

} // namespace

TEST_F(ATSPIMenuItemOnBusTest, TellsWhetherItCanBeUsed)
{
    EXPECT_EQ(isEnabled(), AccessibilityValue(true));
    m_onBus.setManner(Manner::disabled);
    EXPECT_EQ(isEnabled(), AccessibilityValue(false));
}

TEST_F(ATSPIMenuItemOnBusTest, IsNotDisabledBecauseItDoesNotTell)
{
    m_onBus.setManner(Manner::erring);
    EXPECT_EQ(isEnabled(), AccessibilityValue());
    m_onBus.setManner(Manner::silent);
    EXPECT_EQ(isEnabled(), AccessibilityValue());
    m_onBus.setManner(Manner::disabled);
    useUpTheTime();
    EXPECT_EQ(isEnabled(), AccessibilityValue()) << "it was not even asked";
}

TEST_F(ATSPIMenuItemOnBusTest, IsPressedThoughTheTimeForQuestionsIsUsedUp)
{
    useUpTheTime();
    EXPECT_TRUE(press());
    EXPECT_EQ(m_onBus.presses(), 1);
    m_onBus.setManner(Manner::erring);
    EXPECT_TRUE(press()) << "an error is an answer";
    EXPECT_EQ(m_onBus.presses(), 2);
}

TEST_F(ATSPIMenuItemOnBusTest, IsPressedWhenItsProgramHasComeBack)
{
    m_onBus.setManner(Manner::silent);
    EXPECT_EQ(isEnabled(), AccessibilityValue());
    m_onBus.setManner(Manner::enabled);
    EXPECT_TRUE(press());
    EXPECT_EQ(m_onBus.presses(), 1);
}

TEST_F(ATSPIMenuItemOnBusTest, IsNotPressedWhileItsProgramIsSilent)
{
    m_onBus.setManner(Manner::silent);
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(press());
    EXPECT_GE(timer.elapsed(), 200) << "it did not wait for an answer";
    EXPECT_EQ(m_onBus.messages(), 1) << "it waited twice";
    EXPECT_EQ(m_onBus.presses(), 0) << "it would copy whenever it goes on";
}

} // namespace orvesa
