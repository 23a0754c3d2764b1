#include "desktop/Monitors.h"

#include <QFile>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

constexpr auto configuration = R"(Section "ServerFlags"
    Option "AutoAddDevices" "false"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Virtual 3840 2160
        Modes "1280x1024"
    EndSubSection
EndSection
)";

QString modeName(QSize size)
{
    return u"%1x%2-made"_s.arg(size.width()).arg(size.height());
}

/// A mode line; nothing looks at these times.
QStringList modeLine(QSize size)
{
    QStringList line{modeName(size), u"100"_s};
    for (const int blank : {0, 8, 16, 24}) {
        line.append(QString::number(size.width() + blank));
    }
    for (const int blank : {0, 1, 2, 3}) {
        line.append(QString::number(size.height() + blank));
    }
    return line;
}

} // namespace

QString Monitors::name(std::size_t index)
{
    return u"DUMMY%1"_s.arg(index);
}

QStringList Monitors::serverArguments(const DesktopFolders &folders)
{
    const QString path = folders.temporary() + u"/monitors.conf"_s;
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(configuration) < 0) {
        throw DesktopError(u"the configuration of the monitors cannot be written"_s);
    }
    // A seat of its own keeps it away from the machine's consoles.
    return {u"-config"_s, path, u"-logfile"_s, folders.temporary() + u"/monitors.log"_s, u"-seat"_s, u"orvesa"_s};
}

void Monitors::arrange(const std::vector<QRect> &monitors)
{
    m_modesOfMonitors.resize(std::max(m_modesOfMonitors.size(), monitors.size()));
    for (std::size_t index = 0; index < monitors.size(); ++index) {
        const QSize size = monitors[index].size();
        if (!m_modes.contains(size)) {
            randr(QStringList{u"--newmode"_s} + modeLine(size));
            m_modes.append(size);
        }
        if (!m_modesOfMonitors[index].contains(size)) {
            randr({u"--addmode"_s, name(index), modeName(size)});
            m_modesOfMonitors[index].append(size);
        }
    }
    QStringList all;
    for (std::size_t index = 0; index < m_modesOfMonitors.size(); ++index) {
        all << u"--output"_s << name(index);
        if (index >= monitors.size()) {
            all << u"--off"_s;
            continue;
        }
        const QRect &place = monitors[index];
        all << u"--mode"_s << modeName(place.size()) << u"--pos"_s << u"%1x%2"_s.arg(place.x()).arg(place.y());
        if (index == 0) {
            all << u"--primary"_s;
        }
    }
    randr(all);
    // The server looks which are plugged in when somebody asks for them all; some programs only believe what it saw.
    randr({u"--query"_s});
}

void Monitors::randr(const QStringList &arguments)
{
    const ProcessResult result = m_desktop.runToEnd(u"xrandr"_s, arguments);
    if (result.exitCode != 0) {
        throw DesktopError(u"xrandr %1: %2"_s.arg(arguments.join(u' '), QString::fromUtf8(result.standardError)));
    }
}

} // namespace orvesa::desktop
