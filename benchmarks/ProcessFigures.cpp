#include "ProcessFigures.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString folderOf(qint64 pid)
{
    return u"/proc/%1"_s.arg(pid);
}

/// The number that follows "NAME:" in the kernel's list of fields.
qint64 field(const QByteArray &content, const QByteArray &name)
{
    for (const QByteArray &line : content.split('\n')) {
        if (line.startsWith(name + ':')) {
            return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong();
        }
    }
    return 0;
}

QStringList threadFoldersOf(qint64 pid)
{
    const QString tasks = folderOf(pid) + u"/task/"_s;
    QStringList folders;
    for (const QString &thread : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        folders.append(tasks + thread);
    }
    return folders;
}

} // namespace

MemoryFigures memoryOf(qint64 pid)
{
    constexpr double kilobytesPerMegabyte = 1024;
    const QByteArray content = contentOf(folderOf(pid) + u"/smaps_rollup"_s);
    return {.proportionalMegabytes = static_cast<double>(field(content, "Pss")) / kilobytesPerMegabyte,
            .anonymousMegabytes = static_cast<double>(field(content, "Anonymous")) / kilobytesPerMegabyte};
}

ThreadSwitches contextSwitchesOf(qint64 pid)
{
    ThreadSwitches switches;
    for (const QString &thread : threadFoldersOf(pid)) {
        const QByteArray status = contentOf(thread + u"/status"_s);
        switches.emplace(thread,
                         field(status, "voluntary_ctxt_switches") + field(status, "nonvoluntary_ctxt_switches"));
    }
    return switches;
}

qint64 wakeUpsBetween(const ThreadSwitches &before, const ThreadSwitches &after)
{
    qint64 wakeUps = 0;
    for (const auto &[thread, switches] : after) {
        const auto earlier = before.find(thread);
        wakeUps += earlier == before.end() ? switches : switches - earlier->second;
    }
    for (const auto &[thread, switches] : before) {
        wakeUps += after.contains(thread) ? 0 : 1;
    }
    return wakeUps;
}

qint64 processorTimeOf(qint64 pid)
{
    qint64 nanoseconds = 0;
    for (const QString &thread : threadFoldersOf(pid)) {
        nanoseconds += contentOf(thread + u"/schedstat"_s).split(' ').first().toLongLong();
    }
    return nanoseconds;
}

QStringList mappedLibrariesOf(qint64 pid)
{
    static const QRegularExpression library(u"\\s(/\\S+\\.so(?:\\.[0-9.]+)?)$"_s);
    QStringList libraries;
    for (const QByteArray &line : contentOf(folderOf(pid) + u"/maps"_s).split('\n')) {
        const auto match = library.match(QString::fromUtf8(line));
        if (match.hasMatch()) {
            libraries.append(match.captured(1));
        }
    }
    libraries.removeDuplicates();
    return libraries;
}

} // namespace orvesa::benchmark
