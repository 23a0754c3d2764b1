#include "Platform/linux/ATSPIElements.h"

#include "Platform/AccessibilityElementsContract.h"
#include "Platform/AccessibilityTrustContract.h"
#include "Platform/AdoptedDesktop.h"
#include "Platform/linux/ATSPITrust.h"
#include "Platform/linux/X11HotKeys.h"
#include "Platform/linux/X11Workspace.h"
#include "desktop/BusClient.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QScopeGuard>

#include <csignal>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::waitUntil;
using tests::AdoptedDesktop;
using tests::Mousepad;

namespace {

class ATSPIElementsTest : public ::testing::Test {
protected:
    [[nodiscard]] AccessibilityValue read()
    {
        const AccessibilityValue focused = m_elements.copyAttribute(m_elements.systemWide(), u"AXFocusedUIElement"_s);
        const auto *const element = std::get_if<AccessibilityElement>(&focused);
        return element == nullptr ? AccessibilityValue() : m_elements.copyAttribute(*element, u"AXSelectedText"_s);
    }
    void awaitRead(const QString &expected)
    {
        waitUntil([&] { return read() == AccessibilityValue(expected); }, u"the selection"_s);
    }

    AdoptedDesktop m_desktop;
    X11Connection m_connection;
    X11Workspace m_workspace{m_connection};
    ATSPIBus m_bus{m_connection};
    ATSPIElements m_elements{m_bus, m_workspace};
};

} // namespace

TEST_F(ATSPIElementsTest, KeepsTheContract)
{
    const Mousepad editor(*m_desktop);
    m_desktop->keyboard().type(u"El perro  日本 "_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"El perro  日本 "_s);
    tests::expectAccessibilityElementsContract(
        m_elements, {
                        .application = editor.process.pid(),
                        .selection = u"El perro  日本 "_s,
                        .isCopied =
                            [this] {
                                return desktop::happensWithin(desktop::usualDeadline, [this] {
                                    return m_desktop->runToEnd(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s})
                                               .standardOutput == QByteArray("El perro  日本 ");
                                });
                            },
                        .endApplication =
                            [&editor] {
                                editor.process.kill();
                                (void)editor.process.awaitEnd();
                            },
                    });
}

TEST_F(ATSPIElementsTest, ReadsTheSelectionOfAnEditor)
{
    const Mousepad editor(*m_desktop);
    EXPECT_EQ(m_workspace.frontmostApplication(), editor.process.pid());
    m_desktop->keyboard().type(u"¿Dónde está  日本? 🎉 "_s);
    (void)m_desktop->accessibles().awaitReadable(
        editor.content, [](const QString &now) { return now.endsWith(u"🎉 "_s); }, u"the typed text"_s);
    EXPECT_EQ(read(), AccessibilityValue()) << "nothing is selected";
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"¿Dónde está  日本? 🎉 "_s);
    m_desktop->keyboard().press(u"Right"_s);
    m_desktop->keyboard().press(u"Shift+Left"_s);
    m_desktop->keyboard().press(u"Shift+Left"_s);
    awaitRead(u"🎉 "_s);

    QElapsedTimer timer;
    timer.start();
    constexpr int times = 20;
    for (int time = 0; time < times; ++time) {
        ASSERT_EQ(read(), AccessibilityValue(u"🎉 "_s));
    }
    RecordProperty("millisecondsPerRead", static_cast<int>(timer.elapsed() / times));
    EXPECT_LT(timer.elapsed() / times, 100);
}

TEST_F(ATSPIElementsTest, ReadsTheWindowThatIsInFront)
{
    const Mousepad first(*m_desktop);
    m_desktop->keyboard().type(u"first"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"first"_s);
    const Mousepad second(*m_desktop);
    EXPECT_EQ(read(), AccessibilityValue());
    m_desktop->keyboard().type(u"second"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"second"_s);
    m_desktop->windows().focus(first.window);
    EXPECT_EQ(read(), AccessibilityValue()) << "this toolkit selects in one window at a time";
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"first"_s);
}

TEST_F(ATSPIElementsTest, FollowsTheFocusWithinAWindow)
{
    const Mousepad editor(*m_desktop);
    m_desktop->keyboard().type(u"one two"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"one two"_s);
    m_desktop->keyboard().press(u"Ctrl+f"_s);
    m_desktop->keyboard().type(u"search"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"search"_s);
    awaitRead(u"search"_s); // where it was found the last time
    m_desktop->keyboard().press(u"Escape"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"one two"_s);
}

TEST_F(ATSPIElementsTest, KnowsApplicationsThatWereThereBefore)
{
    const Mousepad editor(*m_desktop);
    m_desktop->keyboard().type(u"known"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"known"_s); // it has come that far
    ATSPIElements elements(m_bus, m_workspace);
    elements.warmUp();

    // Whom a first read would have to ask which applications there are.
    desktop::BusClient bus(m_desktop->accessibilityBusAddress());
    const auto answer = bus.call(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                                 u"GetConnectionUnixProcessID"_s, {u"org.a11y.atspi.Registry"_s});
    const auto registry = static_cast<pid_t>(answer.arguments().value(0).toUInt());
    ASSERT_GT(registry, 1);
    ASSERT_EQ(::kill(registry, SIGSTOP), 0);
    const auto thaw = qScopeGuard([registry] { ::kill(registry, SIGCONT); });
    const AccessibilityValue focused = elements.copyAttribute(elements.systemWide(), u"AXFocusedUIElement"_s);
    ASSERT_TRUE(std::holds_alternative<AccessibilityElement>(focused));
    EXPECT_EQ(elements.copyAttribute(std::get<AccessibilityElement>(focused), u"AXSelectedText"_s),
              AccessibilityValue(u"known"_s));
}

TEST_F(ATSPIElementsTest, GivesUpOnAFrozenApplicationInTime)
{
    const Mousepad editor(*m_desktop);
    m_desktop->keyboard().type(u"frozen"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"frozen"_s);
    editor.process.freeze();
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(read(), AccessibilityValue());
    const qint64 waited = timer.elapsed();
    editor.process.thaw();
    EXPECT_GE(waited, 200) << "it did not answer for another reason";
    EXPECT_LT(waited, 450) << "it was asked again after its silence";
    awaitRead(u"frozen"_s);
}

TEST_F(ATSPIElementsTest, HasNothingOfAProgramThatIsNotOnTheBus)
{
    desktop::Process &terminal = m_desktop->launch(u"xmessage"_s, {u"text"_s});
    m_desktop->windows().awaitActive(m_desktop->windows().awaitWindow({.pid = terminal.pid()}));
    EXPECT_EQ(m_workspace.frontmostApplication(), terminal.pid());
    EXPECT_EQ(m_elements.copyAttribute(m_elements.systemWide(), u"AXFocusedUIElement"_s), AccessibilityValue());
}

TEST_F(ATSPIElementsTest, HasNothingWhereNoWindowIsActive)
{
    EXPECT_EQ(m_elements.copyAttribute(m_elements.systemWide(), u"AXFocusedUIElement"_s), AccessibilityValue());
    EXPECT_EQ(m_elements.copyAttribute(m_elements.systemWide(), u"AXSelectedText"_s), AccessibilityValue());
    EXPECT_EQ(m_elements.copyAttribute(nullptr, u"AXSelectedText"_s), AccessibilityValue());
    EXPECT_EQ(m_elements.copyAttribute(m_elements.systemWide(), u"AXUnknown"_s), AccessibilityValue());
    EXPECT_FALSE(m_elements.performAction(m_elements.systemWide(), u"AXPress"_s));
}

TEST_F(ATSPIElementsTest, ReadsOtherToolkits)
{
    struct Program {
        QString name;
        QStringList arguments;
    };
    const QString path = m_desktop->folders().write(u"home/note.txt"_s, "El perro duerme.");
    for (const Program &program : {Program{u"featherpad"_s, {u"--standalone"_s, path}}}) {
        desktop::Process &process = m_desktop->launch(program.name, program.arguments);
        m_desktop->windows().awaitActive(m_desktop->windows().awaitWindow({.pid = process.pid()}));
        waitUntil(
            [&] {
                m_desktop->keyboard().press(u"Ctrl+a"_s);
                return read() == AccessibilityValue(u"El perro duerme."_s);
            },
            u"the selection in "_s + program.name);
        process.terminate();
    }
}

TEST_F(ATSPIElementsTest, ReadsTheSelectionWhileTheShortcutIsHeld)
{
    const Mousepad editor(*m_desktop);
    m_desktop->keyboard().type(u"held"_s);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    awaitRead(u"held"_s);
    X11HotKeys hotKeys(m_connection);
    std::vector<AccessibilityValue> answers;
    ASSERT_EQ(hotKeys.installHandler([&](HotKeyID) {
        answers.push_back(read());
        return HotKeyStatus::noErr;
    }),
              HotKeyStatus::noErr);
    ASSERT_EQ(hotKeys.registerHotKey(2, 0x800, {0, 1}).status, HotKeyStatus::noErr);
    m_desktop->keyboard().keyDown(u"Alt"_s);
    m_desktop->keyboard().keyDown(u"d"_s);
    waitUntil([&answers] { return !answers.empty(); }, u"the shortcut"_s);
    EXPECT_EQ(answers, std::vector<AccessibilityValue>{u"held"_s});
    m_desktop->keyboard().keyUp(u"d"_s);
    m_desktop->keyboard().keyUp(u"Alt"_s);
}

TEST_F(ATSPIElementsTest, AShortcutWithAltLeavesTheKeyboardWhereItWas)
{
    // Programs of this toolkit take a lone Alt, which is all that they see of the shortcut, for "go to the menu bar".
    const QString path = m_desktop->folders().write(u"home/note.txt"_s, "El perro duerme.");
    desktop::Process &process = m_desktop->launch(u"featherpad"_s, {u"--standalone"_s, path});
    m_desktop->windows().awaitActive(m_desktop->windows().awaitWindow({.pid = process.pid()}));
    waitUntil(
        [&] {
            m_desktop->keyboard().press(u"Ctrl+a"_s);
            return read() == AccessibilityValue(u"El perro duerme."_s);
        },
        u"the editor"_s);
    X11HotKeys hotKeys(m_connection);
    int presses = 0;
    ASSERT_EQ(hotKeys.installHandler([&presses](HotKeyID) {
        ++presses;
        return HotKeyStatus::noErr;
    }),
              HotKeyStatus::noErr);
    ASSERT_EQ(hotKeys.registerHotKey(2, 0x800, {0, 1}).status, HotKeyStatus::noErr);
    m_desktop->keyboard().keyDown(u"Alt"_s);
    m_desktop->keyboard().press(u"d"_s);
    waitUntil([&presses] { return presses != 0; }, u"the shortcut"_s);
    desktop::processEventsFor(std::chrono::milliseconds(60)); // fingers are no faster
    m_desktop->keyboard().keyUp(u"Alt"_s);
    EXPECT_EQ(presses, 1);
    m_desktop->keyboard().press(u"Ctrl+a"_s);
    m_desktop->keyboard().type(u"typed"_s);
    AccessibilityValue content;
    const bool isTyped = desktop::happensWithin(desktop::usualDeadline, [&] {
        m_desktop->keyboard().press(u"Ctrl+a"_s);
        content = read();
        return content == AccessibilityValue(u"typed"_s);
    });
    const auto *const text = std::get_if<QString>(&content);
    EXPECT_TRUE(isTyped) << (text == nullptr ? "nothing" : qPrintable(*text));
}

TEST_F(ATSPIElementsTest, FollowsWhetherTrustIsGiven)
{
    ATSPITrust trust;
    EXPECT_TRUE(trust.isTrusted()) << "asked before the first answer arrived";
    m_desktop->setAccessibilityEnabled(false);
    waitUntil([&] { return !trust.isTrusted(); }, u"the loss of trust"_s);
    int requests = 0;
    trust.requestTrust();
    trust.setRequestPresenter([&] { ++requests; });
    trust.requestTrust();
    EXPECT_EQ(requests, 1);
    EXPECT_FALSE(trust.isTrusted()) << "asking is not granting";
    trust.enable();
    waitUntil([&] { return trust.isTrusted(); }, u"the trust"_s);
}

TEST_F(ATSPIElementsTest, ReadsFromAProgramThatIsThereOnceForEachOfItsToolkits)
{
    const desktop::Process &probe = m_desktop->launch(QStringLiteral(ORVESA_TWO_TOOLKITS_PROBE));
    m_desktop->windows().awaitActive(m_desktop->windows().awaitWindow({.pid = probe.pid()}));
    awaitRead(u"Two toolkits, one process"_s);
}

TEST_F(ATSPIElementsTest, KeepsTheContractOfTrust)
{
    ATSPITrust trust;
    int requests = 0;
    trust.setRequestPresenter([&requests] { ++requests; });
    const auto decide = [&](bool isGiven) {
        m_desktop->setAccessibilityEnabled(isGiven);
        waitUntil([&] { return trust.isTrusted() == isGiven; }, u"the decision"_s);
    };
    tests::expectAccessibilityTrustContract(trust, {.decide = decide, .requests = [&requests] { return requests; }});
}

TEST(ATSPIWithoutBuses, TrustsNothingAndReadsNothing)
{
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    qunsetenv("DISPLAY");
    ATSPITrust trust;
    EXPECT_FALSE(trust.isTrusted());
    trust.enable();
    EXPECT_FALSE(trust.isTrusted());
    X11Connection connection;
    X11Workspace workspace(connection);
    ATSPIBus bus(connection);
    ATSPIElements elements(bus, workspace);
    elements.warmUp();
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    EXPECT_FALSE(workspace.open(QUrl(u"https://localhost/"_s)));
    const QUrl permissionPage(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"_s);
    EXPECT_FALSE(workspace.open(permissionPage));
    int shown = 0;
    workspace.setPermissionPage([&shown] { ++shown; });
    EXPECT_TRUE(workspace.open(permissionPage));
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(elements.copyAttribute(elements.systemWide(), u"AXFocusedUIElement"_s), AccessibilityValue());
    EXPECT_EQ(elements.copyAttribute(elements.application(1), u"AXFocusedUIElement"_s), AccessibilityValue());
}

} // namespace orvesa
