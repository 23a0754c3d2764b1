// The copy command of a focused element, as GTK 4 tells it: a list of the commands that can be used now.

#include "Platform/AdoptedDesktop.h"
#include "Platform/linux/ATSPIBus.h"
#include "Platform/linux/ATSPIElementHandle.h"
#include "Platform/linux/ATSPIElements.h"
#include "Platform/linux/X11Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QMutex>
#include <QThread>

namespace orvesa {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using tests::AdoptedDesktop;

/// An element of another program. It answers in a thread of its own, since whoever asks waits in this one.
class CommandsOnBus : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.atspi.Action")
    Q_PROPERTY(int NActions READ count)

public:
    [[nodiscard]] int count() const
    {
        const QMutexLocker lock(&m_mutex);
        return static_cast<int>(m_names.size());
    }
    void setNames(const QStringList &names)
    {
        const QMutexLocker lock(&m_mutex);
        m_names = names;
    }
    [[nodiscard]] QStringList performed() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_performed;
    }

public Q_SLOTS:
    QString GetName(int index) const
    {
        const QMutexLocker lock(&m_mutex);
        return m_names.value(index);
    }
    bool DoAction(int index)
    {
        const QMutexLocker lock(&m_mutex);
        m_performed.append(m_names.value(index));
        return true;
    }

private:
    mutable QMutex m_mutex;
    QStringList m_names;
    QStringList m_performed;
};

namespace {

class ATSPICommandTest : public ::testing::Test {
protected:
    ATSPICommandTest()
    {
        const QString address = m_desktop->environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
        QDBusConnection theirs = QDBusConnection::connectToBus(address, u"orvesa-test-commands"_s);
        m_commands.moveToThread(&m_thread);
        m_thread.start();
        EXPECT_TRUE(theirs.registerObject(m_element.path, &m_commands,
                                          QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties));
        m_element.busName = theirs.baseService();
        m_client = std::make_shared<ATSPIClient>(QDBusConnection::connectToBus(address, u"orvesa-test-asker"_s));
    }
    ~ATSPICommandTest() override
    {
        QDBusConnection::disconnectFromBus(u"orvesa-test-commands"_s);
        QDBusConnection::disconnectFromBus(u"orvesa-test-asker"_s);
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY_MOVE(ATSPICommandTest)

    std::optional<ATSPIMenus::CopyCommand> look() { return ATSPIMenus(*m_client).copyCommand(m_element); }
    bool press()
    {
        const auto item = std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Command{m_element, true}, m_client);
        return m_elements.performAction(item, u"AXPress"_s);
    }
    AccessibilityValue isEnabled(bool enabled)
    {
        const auto item =
            std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Command{m_element, enabled}, m_client);
        return m_elements.copyAttribute(item, u"AXEnabled"_s);
    }

    AdoptedDesktop m_desktop{[] {
        desktop::DesktopOptions options;
        options.accessibility = desktop::Accessibility::none;
        options.keyStore = desktop::KeyStore::absent;
        return options;
    }()};
    X11Connection m_connection;
    X11Workspace m_workspace{m_connection};
    ATSPIBus m_bus{m_connection};
    ATSPIElements m_elements{m_bus, m_workspace};
    QThread m_thread;
    CommandsOnBus m_commands;
    ATSPIReference m_element{{}, u"/element"_s};
    std::shared_ptr<ATSPIClient> m_client;
};

} // namespace

TEST_F(ATSPICommandTest, IsFoundByItsName)
{
    m_commands.setNames({u"clipboard.paste"_s, u"clipboard.copy"_s, u"clipboard.cut"_s});
    const auto found = look();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->action, 1);
    EXPECT_EQ(isEnabled(true), AccessibilityValue(true));
}

TEST_F(ATSPICommandTest, IsDisabledWhereTheOthersOfItsKindAreListedWithoutIt)
{
    m_commands.setNames({u"clipboard.paste"_s, u"selection.select-all"_s});
    const auto found = look();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->action, std::nullopt);
    EXPECT_EQ(isEnabled(false), AccessibilityValue(false));
}

TEST_F(ATSPICommandTest, IsAbsentWhereNothingOfTheKindIsListed)
{
    EXPECT_FALSE(look());
    m_commands.setNames({u"activate"_s, u"menu.popup"_s});
    EXPECT_FALSE(look());
}

TEST_F(ATSPICommandTest, RunsNoOtherThatHasComeIntoItsPlace)
{
    m_commands.setNames({u"clipboard.paste"_s, u"clipboard.copy"_s, u"clipboard.cut"_s});
    ASSERT_TRUE(look());
    m_commands.setNames({u"selection.select-all"_s, u"clipboard.cut"_s, u"selection.delete"_s, u"clipboard.copy"_s});
    EXPECT_TRUE(press());
    EXPECT_THAT(m_commands.performed(), ElementsAre(u"clipboard.copy"_s));
}

TEST_F(ATSPICommandTest, RunsThoughTheTimeForQuestionsIsUsedUp)
{
    m_commands.setNames({u"clipboard.cut"_s, u"clipboard.copy"_s});
    m_client = std::make_shared<ATSPIClient>(m_client->another(std::chrono::milliseconds::zero()));
    ASSERT_FALSE(m_client->mayAsk(m_element.busName));
    EXPECT_TRUE(press());
    EXPECT_THAT(m_commands.performed(), ElementsAre(u"clipboard.copy"_s));
}

TEST_F(ATSPICommandTest, RunsNothingWhenItCanNoLongerBeUsed)
{
    m_commands.setNames({u"clipboard.copy"_s, u"clipboard.cut"_s, u"selection.select-all"_s});
    ASSERT_TRUE(look());
    m_commands.setNames({u"clipboard.cut"_s, u"selection.select-all"_s});
    EXPECT_FALSE(press());
    EXPECT_THAT(m_commands.performed(), IsEmpty());
}

} // namespace orvesa

#include "ATSPICommandTest.moc"
