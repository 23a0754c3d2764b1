#include "Platform/linux/XDGAutostart.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// An entry is a few lines; whatever is larger is none.
constexpr qint64 greatestEntryBytes = qint64{64} * 1024;

/// The values of the entry's own group.
QMap<QString, QString> valuesOf(const QString &path)
{
    QMap<QString, QString> values;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return values;
    }
    bool isInGroup = false;
    const QStringList lines = QString::fromUtf8(file.read(greatestEntryBytes)).split(u'\n');
    for (const QString &line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(u'[')) {
            isInGroup = trimmed == "[Desktop Entry]"_L1;
        } else if (const qsizetype equals = trimmed.indexOf(u'='); isInGroup && equals > 0) {
            values[trimmed.first(equals).trimmed()] = trimmed.sliced(equals + 1).trimmed();
        }
    }
    return values;
}

} // namespace

XDGAutostart::XDGAutostart(QString identifier, QString name, QString program)
    : m_path(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart/"_s + identifier +
             u".desktop"_s),
      m_identifier(std::move(identifier)), m_name(std::move(name)), m_program(std::move(program))
{
}

bool XDGAutostart::isOn() const
{
    const QMap<QString, QString> values = valuesOf(m_path);
    // A desktop's own list of login programs switches entries off in one of these ways.
    return !values.value(u"Exec"_s).isEmpty() && values.value(u"Hidden"_s) != "true"_L1 &&
           values.value(u"X-GNOME-Autostart-enabled"_s) != "false"_L1;
}

bool XDGAutostart::turnOn()
{
    if (!QDir().mkpath(QFileInfo(m_path).path())) {
        return false;
    }
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.write(u"[Desktop Entry]\n"
               u"Type=Application\n"
               u"Name=%1\n"
               u"Exec=%2\n"
               u"TryExec=%3\n"
               u"Icon=%4\n"
               u"Terminal=false\n"
               u"StartupNotify=false\n"
               u"X-GNOME-Autostart-enabled=true\n"_s.arg(m_name, command(), programFile(), m_identifier)
                   .toUtf8());
    return file.commit();
}

bool XDGAutostart::turnOff()
{
    return !QFileInfo::exists(m_path) || QFile::remove(m_path);
}

bool XDGAutostart::isFoundByName() const
{
    const QFileInfo program(m_program);
    const QString found = QStandardPaths::findExecutable(program.fileName());
    return !found.isEmpty() && QFileInfo(found).canonicalFilePath() == program.canonicalFilePath();
}

QString XDGAutostart::command() const
{
    const QFileInfo program(m_program);
    return isFoundByName() ? program.fileName() : quoted(program.absoluteFilePath());
}

QString XDGAutostart::programFile() const
{
    const QFileInfo program(m_program);
    return isFoundByName() ? program.fileName() : program.absoluteFilePath().replace(u'\\', u"\\\\"_s);
}

QString XDGAutostart::quoted(const QString &path)
{
    QString word;
    for (const QChar character : path) {
        if (character == u'%') {
            word += u"%%"_s;
            continue;
        }
        // Escaped once for the word in quotes, and its backslash once more for the entry's value.
        if (u"\"`$"_s.contains(character)) {
            word += u"\\\\"_s;
        } else if (character == u'\\') {
            word += u"\\\\\\"_s;
        }
        word += character;
    }
    return u'"' + word + u'"';
}

} // namespace orvesa
