#include "App/DoctorSentences.h"

#include "Platform/HotKeyPort.h"

using namespace Qt::StringLiterals;

namespace orvesa::DoctorSentences {

using Verdict = DoctorFinding::Verdict;
using Accessibility = DesktopInspectionPort::Accessibility;
using KeyStore = DesktopInspectionPort::KeyStore;
using Session = DesktopInspectionPort::Session;
using Tray = DesktopInspectionPort::Tray;
using Outcome = ServiceReach::Outcome;

namespace {

const QString noBusRemedy =
    u"Start it inside a desktop session, where DBUS_SESSION_BUS_ADDRESS or XDG_RUNTIME_DIR names "
    u"the session's message bus."_s;

QString keySubject(AIProviderType type)
{
    return u"API key for %1"_s.arg(displayName(type));
}

} // namespace

DoctorFinding session(Session session, bool hasDisplay, const QString &desktopName)
{
    const QString subject = u"Desktop"_s;
    const QString name = desktopName.isEmpty() ? u"without a name"_s : desktopName;
    if (session == Session::none) {
        return {Verdict::wrong, subject, u"no graphical session"_s,
                u"Start it in a graphical session. The commands that --help lists work without one."_s};
    }
    if (!hasDisplay && session == Session::x11) {
        // Another user's shell, root's or one from afar: it may name a display that it is not let in to.
        return {
            Verdict::wrong, subject, u"%1, but its display does not let programs in"_s.arg(name),
            u"Start it inside that desktop session and as its user, where DISPLAY and XAUTHORITY name its display."_s};
    }
    if (!hasDisplay) {
        return {Verdict::wrong, subject, u"%1, but no X server answers"_s.arg(name),
                u"Shortcuts and the capture of selections need X11 or XWayland; switch XWayland on."_s};
    }
    if (session == Session::wayland) {
        return {Verdict::note, subject, u"%1, Wayland with XWayland"_s.arg(name),
                u"Selections of Wayland applications come by accessibility alone. Shortcuts come from the desktop's "
                u"portal, where it has one."_s};
    }
    return {Verdict::good, subject, u"%1, X11"_s.arg(name), {}};
}

DoctorFinding accessibility(Accessibility state)
{
    const QString subject = u"Accessibility"_s;
    switch (state) {
    case Accessibility::noSessionBus:
        return {Verdict::wrong, subject, u"no session bus"_s, noBusRemedy};
    case Accessibility::noAccessibilityBus:
        return {Verdict::wrong, subject, u"no accessibility bus"_s,
                u"Install at-spi2-core and log in again. Without it no selected text can be read."_s};
    case Accessibility::switchedOff:
        return {Verdict::wrong, subject, u"switched off"_s,
                u"Choose Enable when the utility asks, and start applications again that were open before."_s};
    case Accessibility::switchedOn:
        break;
    }
    return {Verdict::good, subject, u"switched on"_s, {}};
}

DoctorFinding keyStore(KeyStore state)
{
    const QString subject = u"Key store"_s;
    switch (state) {
    case KeyStore::noSessionBus:
        return {Verdict::wrong, subject, u"no session bus"_s, noBusRemedy};
    case KeyStore::noLibrary:
        return {Verdict::wrong, subject, u"libsecret is missing"_s, u"Install libsecret-1-0."_s};
    case KeyStore::absent:
        return {Verdict::wrong, subject, u"absent"_s,
                u"Install gnome-keyring, or switch the Secret Service on in KWallet or KeePassXC, and log in again."_s};
    case KeyStore::startable:
        return {Verdict::note, subject, u"not running; the first use starts it"_s, {}};
    case KeyStore::noCollection:
        return {Verdict::wrong, subject, u"running, without a default keyring"_s,
                u"Make one in the key store's own program (Passwords and Keys, KWallet, KeePassXC) and set it as the "
                u"default."_s};
    case KeyStore::locked:
        return {
            Verdict::note, subject, u"running, locked"_s,
            u"It asks for its password at the first use. A keyring with the login's password is unlocked at login."_s};
    case KeyStore::unreadable:
        return {Verdict::wrong, subject, u"running, but its default keyring cannot be used"_s,
                u"Log out and in: a keyring that has just been made at login is ready then. Otherwise set another "
                u"default one in the key store's own program."_s};
    case KeyStore::silent:
        return {Verdict::wrong, subject, u"running, but it does not answer"_s,
                u"A prompt of it may be open. Otherwise log out and in."_s};
    case KeyStore::unlocked:
        break;
    }
    return {Verdict::good, subject, u"running, unlocked"_s, {}};
}

DoctorFinding key(AIProviderType type, std::optional<bool> isStored)
{
    const QString subject = keySubject(type);
    if (!isStored) {
        return {Verdict::wrong, subject, u"not looked for, because the key store does not give it"_s,
                u"Unlock the keyring that holds it, in the key store's own program, and try again."_s};
    }
    if (!*isStored) {
        return {Verdict::wrong, subject, u"missing"_s,
                u"Enter it in the settings window, or pipe it into: orvesa-translate key set %1"_s.arg(rawValue(type))};
    }
    return {Verdict::good, subject, u"stored"_s, {}};
}

DoctorFinding keyNotLookedFor(AIProviderType type)
{
    return {Verdict::note, keySubject(type), u"not looked for, because the key store is not open"_s, {}};
}

DoctorFinding tray(Tray tray)
{
    const QString subject = u"Tray"_s;
    switch (tray) {
    case Tray::none:
        return {Verdict::note, subject, u"none"_s,
                u"Shortcuts work without it; start orvesa-translate again for its settings. GNOME needs the extension "
                u"AppIndicator for a tray."_s};
    case Tray::embedding:
        return {Verdict::good, subject, u"there (XEmbed)"_s, {}};
    case Tray::statusNotifier:
        break;
    }
    return {Verdict::good, subject, u"there (StatusNotifierItem)"_s, {}};
}

DoctorFinding utility(bool isRunning)
{
    if (isRunning) {
        return {Verdict::good, u"Utility"_s, u"running"_s, {}};
    }
    return {Verdict::note, u"Utility"_s, u"not running"_s, u"Start it: orvesa-translate"_s};
}

DoctorFinding shortcut(const QString &subject, qint32 status, bool isUtilityRunning)
{
    switch (status) {
    case HotKeyStatus::noErr:
        if (isUtilityRunning) {
            return {Verdict::wrong, subject, u"free, but the utility does not hold it"_s,
                    u"It was taken when the utility asked for it. Start the utility again."_s};
        }
        return {Verdict::good, subject, u"free"_s, {}};
    case HotKeyStatus::hotKeyExists:
        return {Verdict::wrong, subject, u"taken by another program"_s,
                u"Choose another one in the settings window, or let go of it in the desktop's keyboard settings."_s};
    case HotKeyStatus::hotKeyInvalid:
        return {Verdict::wrong, subject, u"no such key on this keyboard"_s,
                u"Choose another one in the settings window."_s};
    default:
        break;
    }
    return {Verdict::wrong, subject, u"keys cannot be taken on this desktop"_s,
            u"Bind keys in the desktop's settings to: orvesa-translate --perform ACTION"_s};
}

DoctorFinding portalShortcut(const QString &subject, bool hasPortal)
{
    if (hasPortal) {
        return {
            Verdict::note, subject, u"left to the desktop's portal"_s,
            u"Start the utility and look at the desktop's keyboard settings for the keys that it has been given."_s};
    }
    return {Verdict::wrong, subject, u"this Wayland desktop has no portal for shortcuts"_s,
            u"Bind keys in the desktop's settings to: orvesa-translate --perform translateSelection (polishSelection, "
            u"ocrTranslate)"_s};
}

DoctorFinding screenCapture(DesktopInspectionPort::ScreenCapture state)
{
    using ScreenCapture = DesktopInspectionPort::ScreenCapture;
    const QString subject = u"Screen capture"_s;
    switch (state) {
    case ScreenCapture::noTool:
        return {Verdict::wrong, subject, u"orvesa-screencapture is missing beside the program"_s,
                u"Install the program again."_s};
    case ScreenCapture::noPortal:
        return {Verdict::wrong, subject, u"this Wayland desktop has no running portal for screenshots"_s,
                u"Install xdg-desktop-portal with the part for your desktop, and log in again."_s};
    case ScreenCapture::there:
        break;
    }
    return {Verdict::good, subject, u"there"_s, {}};
}

DoctorFinding recognition(const std::optional<QStringList> &missing)
{
    const QString subject = u"Text recognition"_s;
    if (!missing) {
        return {Verdict::wrong, subject, u"orvesa-recognize is missing beside the program, or fails"_s,
                u"Install the program again."_s};
    }
    if (missing->isEmpty()) {
        return {Verdict::good, subject, u"English, Japanese and Traditional Chinese"_s, {}};
    }
    return {Verdict::wrong, subject, u"languages are missing"_s, u"Install "_s + missing->join(u", "_s) + u'.'};
}

DoctorFinding network(const QString &service, const ServiceReach::Result &result)
{
    const QString subject = u"Network"_s;
    const auto wrong = [&](const QString &observation, const QString &remedy) {
        return DoctorFinding{Verdict::wrong, subject, u"%1 cannot be reached: %2"_s.arg(service, observation), remedy};
    };
    switch (result.outcome) {
    case Outcome::answered:
        // Without a key the answer is a refusal; that it comes is what counts.
        return {Verdict::good,
                subject,
                u"%1 answers (HTTP %2 after %3 ms)"_s.arg(service).arg(result.status).arg(result.elapsed.count()),
                {}};
    case Outcome::nameNotFound:
        return wrong(u"its name is not known"_s, u"Look at the network connection and at the name servers."_s);
    case Outcome::refused:
        return wrong(u"the connection was refused"_s,
                     u"Look at the address in the _BASE_URL variable, or the firewall."_s);
    case Outcome::timedOut:
        return wrong(
            u"no answer in %1 s"_s.arg(std::chrono::duration_cast<std::chrono::seconds>(ServiceReach::bound).count()),
            u"Look at the network connection, the firewall and the proxy."_s);
    case Outcome::encryptionFailed:
        return wrong(u"its certificate is not accepted"_s,
                     u"Look at the clock. Behind a company's gateway name its authorities in SSL_CERT_FILE."_s);
    case Outcome::proxyFailed:
        return wrong(u"the proxy fails"_s, u"Look at https_proxy, no_proxy and the desktop's proxy settings."_s);
    case Outcome::unreachable:
        break;
    }
    return wrong(u"the connection fails"_s, u"Look at the network connection, the firewall and the proxy."_s);
}

} // namespace orvesa::DoctorSentences
