#include "Platform/AdoptedDesktop.h"

namespace orvesa::tests {

using namespace Qt::StringLiterals;

AdoptedDesktop::AdoptedDesktop(const desktop::DesktopOptions &options) : m_desktop(options)
{
    for (const auto *const name :
         {"DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
        const QString variable = QString::fromLatin1(name);
        if (m_desktop.environment().contains(variable)) {
            qputenv(name, m_desktop.environment().value(variable).toUtf8());
        } else {
            qunsetenv(name);
        }
    }
}

Mousepad::Mousepad(desktop::Desktop &desktop)
    : process(desktop.launch(u"mousepad"_s, {u"--disable-server"_s})),
      window(desktop.windows().awaitWindow({.pid = process.pid(), .title = u"Mousepad"_s}))
{
    desktop.windows().awaitActive(window);
    content = desktop.accessibles().await(process.pid(), u"text"_s);
    desktop::waitUntil([this] { return content.has(desktop::AccessibleState::focused); },
                       u"the editor's text to have the focus"_s);
}

desktop::DesktopOptions screenOnly()
{
    desktop::DesktopOptions options = sessionOnly();
    options.windowManager = desktop::WindowManager::none;
    options.sessionBus = desktop::SessionBus::none;
    return options;
}

desktop::DesktopOptions sessionOnly()
{
    desktop::DesktopOptions options;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    return options;
}

} // namespace orvesa::tests
