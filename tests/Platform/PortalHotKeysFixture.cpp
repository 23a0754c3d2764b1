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
}

PortalHotKeysFixture::~PortalHotKeysFixture()
{
    qInstallMessageHandler(m_earlier);
    capturedLog = nullptr;
}

desktop::Process &PortalHotKeysFixture::startPortal()
{
    desktop::Process &portal = m_desktop->launch(QStringLiteral(ORVESA_FAKE_PORTAL));
    EXPECT_EQ(portal.readLine(), "ready");
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

void PortalHotKeysFixture::expectBoundAt(desktop::Process &portal, const QByteArray &binding)
{
    EXPECT_EQ(portal.readLine(), "session");
    EXPECT_EQ(portal.readLine(), binding);
    portal.write("press hotkey-1-ALT+d\n");
    waitUntil([this] { return m_pressed.size() == 1; }, u"the press"_s);
    EXPECT_EQ(m_pressed.front(), 1U);
    EXPECT_EQ(m_log.size(), 1);
}

} // namespace orvesa::tests
