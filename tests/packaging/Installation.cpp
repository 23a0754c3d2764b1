#include "packaging/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>

namespace orvesa::packaging {

using namespace Qt::StringLiterals;

namespace {

/// lintian takes seconds; a machine that is busy with other things takes more.
constexpr int boundInMilliseconds = 100'000;

} // namespace

ToolResult run(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(boundInMilliseconds)) {
        const QByteArray reason = process.errorString().toUtf8();
        process.kill();
        process.waitForFinished(boundInMilliseconds);
        return {-1, program.toUtf8() + ": " + reason};
    }
    const bool isNormal = process.exitStatus() == QProcess::NormalExit;
    return {isNormal ? process.exitCode() : -1, process.readAll()};
}

Installation::Installation(const QString &prefix)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DESTDIR"_s, m_folder.path());
    const ToolResult result =
        run(QStringLiteral(ORVESA_CMAKE), {u"--install"_s, QStringLiteral(ORVESA_BUILD_FOLDER), u"--prefix"_s, prefix},
            environment);
    EXPECT_EQ(result.exitCode, 0) << result.output.constData();
    QDir(m_home.path()).mkdir(u"runtime"_s);
    QFile::setPermissions(m_home.filePath(u"runtime"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString Installation::file(const QString &path) const
{
    return m_folder.path() + path;
}

QByteArray Installation::content(const QString &path) const
{
    QFile file(this->file(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QStringList Installation::files() const
{
    QStringList found;
    QDirIterator iterator(m_folder.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        found.append(iterator.next().sliced(m_folder.path().size()));
    }
    found.sort();
    return found;
}

QProcessEnvironment Installation::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"DBUS_SESSION_BUS_ADDRESS"_s, u"XDG_CONFIG_HOME"_s,
                                u"XDG_DATA_HOME"_s, u"XDG_CACHE_HOME"_s}) {
        environment.remove(name);
    }
    environment.insert(u"HOME"_s, m_home.path());
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_home.filePath(u"runtime"_s));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    return environment;
}

QString valueOf(const QByteArray &file, const QString &group, const QString &key)
{
    bool isInGroup = false;
    const QStringList lines = QString::fromUtf8(file).split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(u'[')) {
            isInGroup = line == u'[' + group + u']';
        } else if (isInGroup && line.startsWith(key + u'=')) {
            return line.sliced(key.size() + 1);
        }
    }
    return {};
}

} // namespace orvesa::packaging
