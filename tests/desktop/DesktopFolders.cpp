#include "desktop/DesktopFolders.h"

#include "desktop/Waiting.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

DesktopFolders::DesktopFolders()
{
    QTemporaryDir folder(QDir::tempPath() + u"/orvesa-desktop-XXXXXX"_s);
    if (!folder.isValid())
        throw DesktopError(u"no temporary folder: %1"_s.arg(folder.errorString()));
    folder.setAutoRemove(false);
    m_top = folder.path();
    for (const QString &path : {home(), runtime(), configuration(), data(), cache(), state(), temporary()})
        QDir().mkpath(path);
    QFile::setPermissions(runtime(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString DesktopFolders::home() const
{
    return m_top + u"/home"_s;
}

QString DesktopFolders::runtime() const
{
    return m_top + u"/run"_s;
}

QString DesktopFolders::configuration() const
{
    return home() + u"/.config"_s;
}

QString DesktopFolders::data() const
{
    return home() + u"/.local/share"_s;
}

QString DesktopFolders::cache() const
{
    return home() + u"/.cache"_s;
}

QString DesktopFolders::state() const
{
    return home() + u"/.local/state"_s;
}

QString DesktopFolders::temporary() const
{
    return m_top + u"/tmp"_s;
}

QString DesktopFolders::write(const QString &relativePath, const QByteArray &content) const
{
    QString path = m_top + u'/' + relativePath;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size())
        throw DesktopError(u"%1 cannot be written: %2"_s.arg(path, file.errorString()));
    return path;
}

QString DesktopFolders::writeBusConfiguration() const
{
    // Of the machine's own services only the configuration store of Xfce's parts: a key store, for one, must not come
    // up by being asked for on a desktop that is to have none.
    const QString services = m_top + u"/bus-services"_s;
    QDir().mkpath(services);
    QFile::link(u"/usr/share/dbus-1/services/org.xfce.Xfconf.service"_s, services + u"/org.xfce.Xfconf.service"_s);
    const QString configuration = uR"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%2</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)"_s.arg(runtime(), services);
    return write(u"bus.conf"_s, configuration.toUtf8());
}

void DesktopFolders::writePanelConfiguration() const
{
    write(u"home/.config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"_s,
          R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="26"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
)");
}

} // namespace orvesa::desktop
