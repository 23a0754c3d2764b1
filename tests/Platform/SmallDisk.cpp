#include "Platform/SmallDisk.h"

#include <QDir>
#include <QFile>
#include <QStorageInfo>

#include <stdexcept>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace orvesa::tests {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t blockSize = 4096;
constexpr auto mountOptions = "size=128k,mode=0700";

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text);
    }
}

bool enterMountNamespace()
{
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return false;
        }
        write(u"/proc/self/setgroups"_s, "deny");
        write(u"/proc/self/uid_map"_s, user + ' ' + user + " 1");
        write(u"/proc/self/gid_map"_s, group + ' ' + group + " 1");
    }
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

SmallDisk::SmallDisk(const QString &mountPoint) : m_folder(mountPoint)
{
    if (enterMountNamespace() &&
        ::mount("none", QFile::encodeName(m_folder).constData(), "tmpfs", MS_NOSUID | MS_NODEV, mountOptions) == 0) {
        m_isMounted = true;
        return;
    }
    constexpr qint64 small = 128 << 20;
    if (QStorageInfo(u"/dev/shm"_s).bytesTotal() > small) {
        throw std::runtime_error("a small disk needs mount namespaces (root, or unprivileged user namespaces)");
    }
    m_folder = u"/dev/shm/orvesa-%1"_s.arg(::getpid());
    QDir().mkpath(m_folder);
}

SmallDisk::~SmallDisk()
{
    if (!m_isMounted) {
        QDir(m_folder).removeRecursively();
    }
}

QByteArray SmallDisk::fillerPath() const
{
    return QFile::encodeName(m_folder + u"/filler"_s);
}

void SmallDisk::fillBut(int blocks)
{
    const int filler = ::open(fillerPath().constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const QByteArray block(blockSize, 'x');
    off_t size = 0;
    while (::write(filler, block.constData(), blockSize) == static_cast<ssize_t>(blockSize)) {
        size += static_cast<off_t>(blockSize);
    }
    if (::ftruncate(filler, std::max<off_t>(0, size - blocks * static_cast<off_t>(blockSize))) != 0 ||
        ::close(filler) != 0) {
        throw std::runtime_error("the small disk could not be filled");
    }
}

void SmallDisk::empty()
{
    ::unlink(fillerPath().constData());
}

bool SmallDisk::makeReadOnly()
{
    return m_isMounted &&
           ::mount("none", QFile::encodeName(m_folder).constData(), nullptr, MS_REMOUNT | MS_RDONLY, mountOptions) == 0;
}

void SmallDisk::makeWritable()
{
    (void)::mount("none", QFile::encodeName(m_folder).constData(), nullptr, MS_REMOUNT, mountOptions);
}

} // namespace orvesa::tests
