#include "Platform/PortalHotKeysFixture.h"

namespace orvesa::tests {

using namespace Qt::StringLiterals;
using desktop::waitUntil;

namespace {

desktop::DesktopOptions busOnly()
{
    desktop::DesktopOptions options;
    options.windowManager = desktop::WindowManager::none;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    return options;
}

QStringList *capturedLog = nullptr;

void captureLog(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (capturedLog != nullptr) {
        capturedLog->append(message);
    }
}

} // namespace

PortalHotKeysFixture::PortalHotKeysFixture() : m_desktop(busOnly())
{
    capturedLog = &m_log;
    m_earlier = qInstallMessageHandler(captureLog);
    listenTo(m_hotKeys);
}

PortalHotKeysFixture::~PortalHotKeysFixture()
{
    qInstallMessageHandler(m_earlier);
    capturedLog = nullptr;
}

desktop::Process &PortalHotKeysFixture::startPortal(const QByteArray &order)
{
    desktop::Process &portal = m_desktop->launch(QStringLiteral(ORVESA_FAKE_PORTAL));
    EXPECT_EQ(portal.readLine(), "ready");
    if (!order.isEmpty()) {
        portal.write(order + '\n');
        const QByteArray answer = portal.readLine();
        EXPECT_TRUE(answer == "holding" || answer == "giving" || answer == "refusing") << answer.constData();
    }
    return portal;
}

desktop::Process &PortalHotKeysFixture::startPortalAfterLoss()
{
    waitUntil([this] { return !m_log.isEmpty(); }, u"the word about it"_s);
    return startPortal();
}

void PortalHotKeysFixture::listenTo(PortalHotKeys &hotKeys)
{
    EXPECT_EQ(hotKeys.installHandler([this](HotKeyID id) {
        m_pressed.push_back(id.id);
        return HotKeyStatus::noErr;
    }),
              HotKeyStatus::noErr);
}

HotKeyRegistration PortalHotKeysFixture::registerKey(PortalHotKeys &hotKeys, quint32 key, quint32 id)
{
    const HotKeyRegistration registration = hotKeys.registerHotKey(key, option, {signature, id});
    EXPECT_EQ(registration.status, HotKeyStatus::noErr);
    return registration;
}

void PortalHotKeysFixture::expectBound(desktop::Process &portal, const QByteArray &shortcuts)
{
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), "bind " + shortcuts);
}

desktop::Process &PortalHotKeysFixture::startPortalWithOneBound()
{
    desktop::Process &portal = startPortal();
    (void)registerKey(m_hotKeys, keyD, 1);
    expectBound(portal, "hotkey-1-ALT+d=ALT+d ()");
    return portal;
}

void PortalHotKeysFixture::expectBoundAt(desktop::Process &portal, const QByteArray &shortcuts)
{
    expectBound(portal, shortcuts);
    press(portal, "hotkey-1-ALT+d");
    EXPECT_EQ(m_pressed.back(), 1U);
    EXPECT_EQ(m_log.size(), 1);
}

void PortalHotKeysFixture::press(desktop::Process &portal, const QByteArray &shortcut)
{
    const std::size_t before = m_pressed.size();
    portal.write("press " + shortcut + '\n');
    waitUntil([&] { return m_pressed.size() > before; }, u"the press"_s);
    EXPECT_EQ(m_pressed.size(), before + 1);
}

} // namespace orvesa::tests
