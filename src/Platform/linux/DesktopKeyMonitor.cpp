#include "Platform/linux/DesktopKeyMonitor.h"

#include "Platform/ModifierBits.h"
#include "Platform/linux/KeySymbols.h"
#include "Platform/linux/MacKeyCodes.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

DesktopKeyMonitor::DesktopKeyMonitor() = default;

DesktopKeyMonitor::~DesktopKeyMonitor() = default;

KeyMonitorPort::Token DesktopKeyMonitor::addMonitor(Handler handler)
{
    m_current = ++m_lastToken;
    m_handler = std::move(handler);
    m_heldKeys.clear(); // their repeats are marked as such; and a release may have been lost
    if (QGuiApplication::platformName() == u"xcb"_s) {
        (void)m_grab.begin([this](const MonitoredKeyPress &press) {
            const Handler taker = m_handler;
            taker(press);
        });
    }
    // Also with the keyboard grabbed: events that a program sends to our windows itself go past every grab.
    if (!m_isFiltering) {
        m_isFiltering = true;
        qGuiApp->installEventFilter(this);
    }
    return m_current;
}

void DesktopKeyMonitor::removeMonitor(Token token)
{
    if (token == 0 || token != m_current) {
        return;
    }
    m_current = 0;
    m_handler = nullptr;
    m_grab.end();
    if (m_heldKeys.empty()) {
        stopFiltering();
    }
}

void DesktopKeyMonitor::stopFiltering()
{
    if (m_isFiltering) {
        m_isFiltering = false;
        m_heldKeys.clear();
        qGuiApp->removeEventFilter(this);
    }
}

bool DesktopKeyMonitor::eventFilter(QObject *watched, QEvent *event)
{
    Q_UNUSED(watched)
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        break;
    case QEvent::ApplicationStateChange:
        // Releases go elsewhere from here on.
        if (m_current == 0 && QGuiApplication::applicationState() != Qt::ApplicationActive) {
            stopFiltering();
        }
        return false;
    default:
        return false;
    }
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (event->type() == QEvent::ShortcutOverride) {
        const bool isOurs = m_current != 0 || m_heldKeys.contains(key.nativeScanCode());
        event->setAccepted(isOurs);
        return isOurs;
    }
    return takesKeyEvent(key);
}

bool DesktopKeyMonitor::takesKeyEvent(const QKeyEvent &event)
{
    const quint32 code = event.nativeScanCode();
    if (event.type() == QEvent::KeyRelease) {
        if (event.isAutoRepeat()) {
            return m_heldKeys.contains(code);
        }
        const bool isOurs = m_heldKeys.erase(code) != 0;
        if (m_current == 0 && m_heldKeys.empty()) {
            stopFiltering();
        }
        return isOurs;
    }
    if (m_current == 0) {
        return m_heldKeys.contains(code) && event.isAutoRepeat();
    }
    if (!event.isAutoRepeat() && !KeySymbols::isModifier(event.nativeVirtualKey())) {
        // An event passes here once for its window and once for each widget that it is offered to.
        if (m_heldKeys.insert(code).second) {
            const MonitoredKeyPress press = translated(event);
            const Handler handler = m_handler; // it may remove itself
            handler(press);
        }
    }
    return true;
}

MonitoredKeyPress DesktopKeyMonitor::translated(const QKeyEvent &event)
{
    MonitoredKeyPress press{.keyCode = MonitoredKeyPress::unknownKeyCode,
                            .characters = KeySymbols::characters(event.nativeVirtualKey())};
    const auto add = [&](Qt::KeyboardModifier modifier, quint32 flag) {
        press.modifierFlags |= event.modifiers().testFlag(modifier) ? flag : 0;
    };
    add(Qt::ShiftModifier, KeyboardFlags::shift);
    add(Qt::ControlModifier, KeyboardFlags::control);
    add(Qt::AltModifier, KeyboardFlags::option);
    add(Qt::MetaModifier, KeyboardFlags::command);
    if (event.key() == Qt::Key_Escape) {
        press.keyCode = MacKeyCodes::escape;
    } else if (const auto known = MacKeyCodes::fromX11(event.nativeScanCode())) {
        press.keyCode = *known;
    }
    return press;
}

} // namespace orvesa
