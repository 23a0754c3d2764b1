// The copy command of a focused element, as GTK 4 tells it: a list of the commands that can be used now.

#include "Platform/ElementOnBusTest.h"
#include "Platform/linux/ATSPIElementHandle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QMutex>

namespace orvesa {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using tests::ElementOnBusTest;

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

class ATSPICommandTest : public ElementOnBusTest<CommandsOnBus> {
protected:
    ATSPICommandTest()
        : ElementOnBusTest([](QDBusConnection &bus, const QString &path, CommandsOnBus &commands) {
              return bus.registerObject(path, &commands,
                                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
          })
    {
    }

    std::optional<ATSPIMenus::CopyCommand> look() { return ATSPIMenus(*m_client).copyCommand(m_reference); }
    bool press()
    {
        const auto item =
            std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Command{m_reference, true}, m_client);
        return m_elements.performAction(item, u"AXPress"_s);
    }
    AccessibilityValue isEnabled(bool enabled)
    {
        const auto item =
            std::make_shared<ATSPIElementHandle>(ATSPIElementHandle::Command{m_reference, enabled}, m_client);
        return m_elements.copyAttribute(item, u"AXEnabled"_s);
    }
};

} // namespace

TEST_F(ATSPICommandTest, IsFoundByItsName)
{
    m_onBus.setNames({u"clipboard.paste"_s, u"clipboard.copy"_s, u"clipboard.cut"_s});
    const auto found = look();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->action, 1);
    EXPECT_EQ(isEnabled(true), AccessibilityValue(true));
}

TEST_F(ATSPICommandTest, IsDisabledWhereTheOthersOfItsKindAreListedWithoutIt)
{
    m_onBus.setNames({u"clipboard.paste"_s, u"selection.select-all"_s});
    const auto found = look();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->action, std::nullopt);
    EXPECT_EQ(isEnabled(false), AccessibilityValue(false));
}

TEST_F(ATSPICommandTest, IsAbsentWhereNothingOfTheKindIsListed)
{
    EXPECT_FALSE(look());
    m_onBus.setNames({u"activate"_s, u"menu.popup"_s});
    EXPECT_FALSE(look());
}

TEST_F(ATSPICommandTest, RunsNoOtherThatHasComeIntoItsPlace)
{
    m_onBus.setNames({u"clipboard.paste"_s, u"clipboard.copy"_s, u"clipboard.cut"_s});
    ASSERT_TRUE(look());
    m_onBus.setNames({u"selection.select-all"_s, u"clipboard.cut"_s, u"selection.delete"_s, u"clipboard.copy"_s});
    EXPECT_TRUE(press());
    EXPECT_THAT(m_onBus.performed(), ElementsAre(u"clipboard.copy"_s));
}

TEST_F(ATSPICommandTest, RunsThoughTheTimeForQuestionsIsUsedUp)
{
    m_onBus.setNames({u"clipboard.cut"_s, u"clipboard.copy"_s});
    m_client = std::make_shared<ATSPIClient>(m_client->another(std::chrono::milliseconds::zero()));
    ASSERT_FALSE(m_client->mayAsk(m_reference.busName));
    EXPECT_TRUE(press());
    EXPECT_THAT(m_onBus.performed(), ElementsAre(u"clipboard.copy"_s));
}

TEST_F(ATSPICommandTest, RunsNothingWhenItCanNoLongerBeUsed)
{
    m_onBus.setNames({u"clipboard.copy"_s, u"clipboard.cut"_s, u"selection.select-all"_s});
    ASSERT_TRUE(look());
    m_onBus.setNames({u"clipboard.cut"_s, u"selection.select-all"_s});
    EXPECT_FALSE(press());
    EXPECT_THAT(m_onBus.performed(), IsEmpty());
}

} // namespace orvesa

#include "ATSPICommandTest.moc"
