#include "Platform/linux/WaylandWorkspace.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/linux/ATSPIElements.h"
#include "Platform/linux/X11Workspace.h"

#include "fakes/FakeWorkspace.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QScopeGuard>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;
using tests::AdoptedDesktop;
using tests::Mousepad;

namespace {

class WaylandOfTheTest final {
public:
    WaylandOfTheTest() : m_type(qgetenv("XDG_SESSION_TYPE"))
    {
        qputenv("XDG_SESSION_TYPE", QByteArrayLiteral("wayland"));
        qputenv("WAYLAND_DISPLAY", QByteArrayLiteral("wayland-of-the-test"));
    }
    ~WaylandOfTheTest()
    {
        qputenv("XDG_SESSION_TYPE", m_type);
        qunsetenv("WAYLAND_DISPLAY");
    }
    Q_DISABLE_COPY_MOVE(WaylandOfTheTest)

private:
    QByteArray m_type;
};

/// An application on the accessibility bus that counts who asks for its windows.
class CountingApplication final : public QDBusVirtualObject {
public:
    [[nodiscard]] QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*connection*/) override
    {
        m_questions += message.member() == "GetChildren"_L1 ? 1 : 0;
        return false;
    }
    [[nodiscard]] int questions() const { return m_questions; }

private:
    int m_questions = 0;
};

class WaylandWorkspaceTest : public ::testing::Test {
protected:
    [[nodiscard]] static AccessibilityValue read(ATSPIElements &elements)
    {
        const AccessibilityValue focused = elements.copyAttribute(elements.systemWide(), u"AXFocusedUIElement"_s);
        const auto *const element = std::get_if<AccessibilityElement>(&focused);
        return element == nullptr ? AccessibilityValue() : elements.copyAttribute(*element, u"AXSelectedText"_s);
    }

    AdoptedDesktop m_desktop;
    X11Connection m_connection;
    X11Workspace m_workspace{m_connection};
    ATSPIBus m_bus{m_connection};
};

} // namespace

TEST_F(WaylandWorkspaceTest, FindsTheApplicationInFrontThatTheXServerDoesNotKnow)
{
    const Mousepad first(*m_desktop);
    const Mousepad second(*m_desktop);
    FakeWorkspace x11; // as for windows of Wayland
    WaylandWorkspace workspace(x11, m_bus);
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt) << "outside Wayland the X server knows all";
    const WaylandOfTheTest wayland;
    EXPECT_EQ(workspace.frontmostApplication(), second.process.pid());
    m_desktop->windows().focus(first.window);
    const auto frontOfNextCapture = [&] {
        (void)m_bus.newClient();
        return workspace.frontmostApplication();
    };
    waitUntil([&] { return frontOfNextCapture() == first.process.pid(); }, u"the other editor"_s);
    x11.setFrontmostApplication(1);
    EXPECT_EQ(workspace.frontmostApplication(), 1);
}

TEST_F(WaylandWorkspaceTest, WaitsOnceForAProgramElsewhereThatHasStopped)
{
    const Mousepad stopped(*m_desktop);
    const Mousepad editor(*m_desktop);
    m_desktop->keyboard().type(u"in front"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    ATSPIElements known(m_bus, m_workspace);
    waitUntil([&] { return read(known) == AccessibilityValue(u"in front"_s); }, u"the selection"_s);
    FakeWorkspace x11;
    const WaylandWorkspace workspace(x11, m_bus);
    ATSPIElements elements(m_bus, workspace);
    const WaylandOfTheTest wayland;
    stopped.process.freeze();
    const auto thaw = qScopeGuard([&stopped] { stopped.process.thaw(); });
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(read(elements), AccessibilityValue(u"in front"_s));
    EXPECT_GE(timer.elapsed(), 200) << "nobody was silent";
    timer.restart();
    EXPECT_EQ(workspace.frontmostApplication(), editor.process.pid());
    EXPECT_LT(timer.elapsed(), 200) << "the same capture waited for it twice";
}

TEST_F(WaylandWorkspaceTest, NeverAsksItsOwnProcessWhichWindowIsInFront)
{
    QDBusConnection bus = m_bus.connection().value();
    CountingApplication own;
    const QString root = u"/org/a11y/atspi/accessible/root"_s;
    ASSERT_TRUE(bus.registerVirtualObject(root, &own, QDBusConnection::SubPath));
    QDBusArgument reference;
    reference.beginStructure();
    reference << bus.baseService() << QDBusObjectPath(root);
    reference.endStructure();
    QDBusMessage embed =
        QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s, root, u"org.a11y.atspi.Socket"_s, u"Embed"_s);
    embed.setArguments({QVariant::fromValue(reference)});
    ASSERT_EQ(bus.call(embed).type(), QDBusMessage::ReplyMessage);
    const Mousepad editor(*m_desktop);
    FakeWorkspace x11;
    const WaylandWorkspace workspace(x11, m_bus);
    const WaylandOfTheTest wayland;
    EXPECT_EQ(workspace.frontmostApplication(), editor.process.pid());
    // It would have been waiting for this thread.
    QCoreApplication::processEvents();
    EXPECT_EQ(own.questions(), 0);
    bus.unregisterObject(root, QDBusConnection::UnregisterTree);
}

} // namespace orvesa
