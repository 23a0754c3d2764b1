#include "Platform/linux/LinuxDesktopInspection.h"

#include "Platform/linux/SecretLibrary.h"
#include "Platform/linux/SessionBus.h"
#include "Platform/linux/WaylandSession.h"
#include "Platform/linux/X11Connection.h"

#include <QCoroProcess>

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr int boundInMilliseconds = 2000;
/// Five languages are loaded, one after the other.
constexpr std::chrono::milliseconds recognitionBound = std::chrono::seconds(20);
constexpr qsizetype greatestNameLength = 40;

const QString secretService = u"org.freedesktop.secrets"_s;
const QString notifierWatcher = u"org.kde.StatusNotifierWatcher"_s;
const QString accessibilityService = u"org.a11y.Bus"_s;

/// The first value of the answer; nothing without one.
std::optional<QVariant> ask(QDBusConnection &bus, const QString &service, const QString &path, const QString &interface,
                            const QString &method, const QVariantList &arguments = {})
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, method);
    question.setArguments(arguments);
    question.setAutoStartService(false);
    const QDBusMessage answer = bus.call(question, QDBus::Block, boundInMilliseconds);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) {
        return std::nullopt;
    }
    return answer.arguments().constFirst();
}

std::optional<QVariant> property(QDBusConnection &bus, const QString &service, const QString &path,
                                 const QString &interface, const QString &name)
{
    const auto answer = ask(bus, service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name});
    return answer ? std::optional(answer->value<QDBusVariant>().variant()) : std::nullopt;
}

std::optional<QVariant> askBus(QDBusConnection &bus, const QString &method, const QVariantList &arguments = {})
{
    return ask(bus, u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method,
               arguments);
}

bool isRunning(QDBusConnection &bus, const QString &name)
{
    const auto answer = askBus(bus, u"NameHasOwner"_s, {name});
    return answer && answer->toBool();
}

bool isStartable(QDBusConnection &bus, const QString &name)
{
    const auto answer = askBus(bus, u"ListActivatableNames"_s);
    return answer && answer->toStringList().contains(name);
}

/// A portal is there when its interface has a version. It is not started by the question.
bool hasPortal(const QString &interface)
{
    auto bus = SessionBus::connection();
    return bus && property(*bus, u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s, interface,
                           u"version"_s)
                      .has_value();
}

bool hasEmbeddingTray()
{
    X11Connection x11;
    if (!x11.isValid()) {
        return false;
    }
    const xcb_atom_t selection = x11.atom("_NET_SYSTEM_TRAY_S" + std::to_string(x11.screenNumber()));
    const auto owner = x11.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x11.connection(), selection));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

LinuxDesktopInspection::LinuxDesktopInspection(Tools tools) : m_tools(std::move(tools)) {}

QString LinuxDesktopInspection::desktopName() const
{
    QString name = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    // The variable can hold anything; names of desktops are simple.
    const bool isName = std::all_of(name.cbegin(), name.cend(), [](QChar character) {
        return character.unicode() < 128 && (character.isLetterOrNumber() || u":-_+. "_s.contains(character));
    });
    return isName ? name.first(std::min(name.size(), greatestNameLength)) : QString();
}

DesktopInspectionPort::Session LinuxDesktopInspection::session() const
{
    if (WaylandSession::isRunning()) {
        return Session::wayland;
    }
    return qEnvironmentVariableIsEmpty("DISPLAY") ? Session::none : Session::x11;
}

bool LinuxDesktopInspection::hasDisplay() const
{
    X11Connection x11;
    return x11.isValid();
}

bool LinuxDesktopInspection::hasShortcutPortal() const
{
    return hasPortal(u"org.freedesktop.portal.GlobalShortcuts"_s);
}

DesktopInspectionPort::Accessibility LinuxDesktopInspection::accessibility() const
{
    auto bus = SessionBus::connection();
    if (!bus) {
        return Accessibility::noSessionBus;
    }
    if (!isRunning(*bus, accessibilityService)) {
        // It starts with the first program that wants it, and is off until somebody switches it on.
        return isStartable(*bus, accessibilityService) ? Accessibility::switchedOff : Accessibility::noAccessibilityBus;
    }
    const auto address = ask(*bus, accessibilityService, u"/org/a11y/bus"_s, accessibilityService, u"GetAddress"_s);
    if (!address || address->toString().isEmpty()) {
        return Accessibility::noAccessibilityBus;
    }
    const auto enabled = property(*bus, accessibilityService, u"/org/a11y/bus"_s, u"org.a11y.Status"_s, u"IsEnabled"_s);
    return enabled && enabled->toBool() ? Accessibility::switchedOn : Accessibility::switchedOff;
}

DesktopInspectionPort::KeyStore LinuxDesktopInspection::keyStore() const
{
    auto bus = SessionBus::connection();
    if (!bus) {
        return KeyStore::noSessionBus;
    }
    if (SecretLibrary::load() == nullptr) {
        return KeyStore::noLibrary;
    }
    if (!isRunning(*bus, secretService)) {
        return isStartable(*bus, secretService) ? KeyStore::startable : KeyStore::absent;
    }
    const auto alias = ask(*bus, secretService, u"/org/freedesktop/secrets"_s, u"org.freedesktop.Secret.Service"_s,
                           u"ReadAlias"_s, {u"default"_s});
    if (!alias) {
        return KeyStore::silent;
    }
    const QString collection = alias->value<QDBusObjectPath>().path();
    if (collection.isEmpty() || collection == "/"_L1) {
        return KeyStore::noCollection;
    }
    const auto locked = property(*bus, secretService, collection, u"org.freedesktop.Secret.Collection"_s, u"Locked"_s);
    if (!locked) {
        // GNOME Keyring in the first session of a new account: the keyring that the login has just made is listed, and
        // cannot be used before the next login.
        const auto listed = property(*bus, secretService, u"/org/freedesktop/secrets"_s,
                                     u"org.freedesktop.Secret.Service"_s, u"Collections"_s);
        return listed ? KeyStore::unreadable : KeyStore::silent;
    }
    return locked->toBool() ? KeyStore::locked : KeyStore::unlocked;
}

DesktopInspectionPort::Tray LinuxDesktopInspection::tray() const
{
    if (auto bus = SessionBus::connection(); bus && isRunning(*bus, notifierWatcher)) {
        const auto isShown = property(*bus, notifierWatcher, u"/StatusNotifierWatcher"_s, notifierWatcher,
                                      u"IsStatusNotifierHostRegistered"_s);
        if (isShown && isShown->toBool()) {
            return Tray::statusNotifier;
        }
    }
    return hasEmbeddingTray() ? Tray::embedding : Tray::none;
}

QCoro::Task<std::optional<QStringList>> LinuxDesktopInspection::missingRecognitionLanguages()
{
    QProcess tool;
    tool.setProgram(m_tools.recognition);
    tool.setArguments({u"--missing"_s});
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.start(QIODevice::ReadOnly);
    const bool hasEnded = co_await qCoro(tool).waitForFinished(recognitionBound);
    if (!hasEnded || tool.exitStatus() != QProcess::NormalExit || tool.exitCode() != 0) {
        tool.kill();
        co_await qCoro(tool).waitForFinished(recognitionBound);
        co_return std::nullopt;
    }
    co_return QString::fromUtf8(tool.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

DesktopInspectionPort::ScreenCapture LinuxDesktopInspection::screenCapture() const
{
    if (!QFileInfo(m_tools.capture).isExecutable()) {
        return ScreenCapture::noTool;
    }
    const bool needsPortal = session() == Session::wayland;
    return needsPortal && !hasPortal(u"org.freedesktop.portal.Screenshot"_s) ? ScreenCapture::noPortal
                                                                             : ScreenCapture::there;
}

} // namespace orvesa
