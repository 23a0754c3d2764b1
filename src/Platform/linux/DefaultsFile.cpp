#include "Platform/linux/DefaultsFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumSize = 16 << 20;
constexpr mode_t privateFile = S_IRUSR | S_IWUSR;
constexpr mode_t privateFolder = S_IRWXU;

class Descriptor final {
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() { close(); }
    Q_DISABLE_COPY_MOVE(Descriptor)

    [[nodiscard]] int get() const { return m_descriptor; }
    [[nodiscard]] bool isValid() const { return m_descriptor >= 0; }
    bool close()
    {
        const int descriptor = std::exchange(m_descriptor, -1);
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    int m_descriptor;
};

QString errorText(int error)
{
    return QString::fromStdString(std::system_category().message(error));
}

DefaultsFile::Stamp stampOf(const struct stat &status)
{
    constexpr qint64 nanoseconds = 1'000'000'000;
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .modified = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec,
            .size = status.st_size};
}

/// Makes the temporary file, mode 0600. Whoever holds the lock always takes the same name, so that what a killed
/// process left there is gone with the next change; without the lock the name is one that nobody else has.
int makeTemporary(const QByteArray &path, const DefaultsFile::Lock &lock, QByteArray &temporary)
{
    if (lock.isHeld()) {
        temporary = path + ".new";
        ::unlink(temporary.constData());
        return ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, privateFile);
    }
    temporary = path + ".XXXXXX";
    return ::mkostemp(temporary.data(), O_CLOEXEC);
}

bool writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        written += count;
    }
    return true;
}

/// What the bytes of the lock file stand for.
enum class LockedByte : off_t { queue, file };

/// Locks or unlocks for this open file, without waiting.
bool changeLock(int descriptor, LockedByte byte, short type)
{
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(byte);
    lock.l_len = 1;
    return ::fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

bool awaitLock(int descriptor, LockedByte byte, std::chrono::steady_clock::time_point deadline)
{
    // There is no waiting for a file lock with a bound, except in small steps.
    using namespace std::chrono_literals;
    while (!changeLock(descriptor, byte, F_WRLCK)) {
        const bool isTaken = errno == EAGAIN || errno == EACCES || errno == EINTR;
        if (!isTaken || std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(500us);
    }
    return true;
}

/// Writes the bytes, waits until they are on disk and closes; whether all went well (errno says what did not).
bool writeToDisk(Descriptor &file, const QByteArray &bytes)
{
    if (!writeAll(file.get(), bytes) || ::fsync(file.get()) != 0) {
        return false;
    }
    return file.close();
}

/// Has the folder written to disk, and with it the file's new name, without waiting for it. Until then a power failure
/// brings back the old content, whole: the wait is not worth that, for it can be as long as the file's own.
void syncSoon(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const auto sync = [descriptor] {
        if (descriptor >= 0) {
            (void)::fsync(descriptor); // a file system that cannot sync folders has done what it can
            ::close(descriptor);
        }
    };
    try {
        std::thread(sync).detach();
    } catch (const std::system_error &) {
        sync();
    }
}

} // namespace

DefaultsFile::DefaultsFile(QString path) : m_path(std::move(path)) {}

QString DefaultsFile::target() const
{
    if (!QFileInfo(m_path).isSymLink()) {
        return m_path;
    }
    std::error_code error;
    const auto resolved =
        std::filesystem::weakly_canonical(std::filesystem::path(QFile::encodeName(m_path).toStdString()), error);
    return error ? m_path : QFile::decodeName(QByteArray::fromStdString(resolved.native()));
}

QString DefaultsFile::folder() const
{
    return QFileInfo(target()).path();
}

DefaultsFile::Content DefaultsFile::read() const
{
    // Not blocking, in case somebody put a pipe there.
    const Descriptor file(::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isValid()) {
        if (errno == ENOENT) {
            return {};
        }
        return {.reading = Reading::refused, .bytes = {}, .stamp = {}, .trouble = errorText(errno)};
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > maximumSize) {
        return {.reading = Reading::refused, .bytes = {}, .stamp = {}, .trouble = u"not a small regular file"_s};
    }
    Content content{.reading = Reading::whole, .bytes = {}, .stamp = stampOf(status), .trouble = {}};
    constexpr std::size_t blockSize = 16384;
    char block[blockSize];
    while (content.bytes.size() <= maximumSize) {
        const ssize_t count = ::read(file.get(), block, sizeof block);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return {.reading = Reading::refused, .bytes = {}, .stamp = {}, .trouble = errorText(errno)};
        }
        if (count == 0) {
            return content;
        }
        content.bytes.append(block, count);
    }
    return {.reading = Reading::refused, .bytes = {}, .stamp = {}, .trouble = u"not a small regular file"_s};
}

DefaultsFile::Stamp DefaultsFile::stamp() const
{
    struct stat status {};
    return ::stat(QFile::encodeName(m_path).constData(), &status) == 0 ? stampOf(status) : Stamp{};
}

std::optional<DefaultsFile::Stamp> DefaultsFile::replace(const QByteArray &bytes, const Lock &lock,
                                                         QString &trouble) const
{
    const QByteArray path = QFile::encodeName(target());
    QByteArray temporary;
    Descriptor file(makeTemporary(path, lock, temporary));
    if (!file.isValid()) {
        trouble = errorText(errno);
        return std::nullopt;
    }
    struct stat status {};
    if (!writeAll(file.get(), bytes) || ::fsync(file.get()) != 0 || ::fstat(file.get(), &status) != 0 ||
        !file.close() || ::rename(temporary.constData(), path.constData()) != 0) {
        trouble = errorText(errno);
        ::unlink(temporary.constData());
        return std::nullopt;
    }
    syncSoon(folder());
    return stampOf(status);
}

bool DefaultsFile::keepCopy(const QByteArray &bytes, QString &copyPath) const
{
    constexpr int mostCopies = 99;
    for (int number = 1; number <= mostCopies; ++number) {
        copyPath = target() + (number == 1 ? u".damaged"_s : u".damaged.%1"_s.arg(number));
        const QByteArray path = QFile::encodeName(copyPath);
        Descriptor file(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, privateFile));
        if (file.isValid()) {
            if (writeToDisk(file, bytes)) {
                return true;
            }
            ::unlink(path.constData());
            return false;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

bool DefaultsFile::makeFolder() const
{
    const QByteArray path = QFile::encodeName(folder());
    for (qsizetype end = path.indexOf('/', 1);; end = path.indexOf('/', end + 1)) {
        const QByteArray part = end < 0 ? path : path.first(end);
        if (::mkdir(part.constData(), privateFolder) != 0 && errno != EEXIST && end < 0) {
            return false;
        }
        if (end < 0) {
            return true;
        }
    }
}

DefaultsFile::Lock::Lock(const DefaultsFile &file)
{
    using namespace std::chrono_literals;
    const QFileInfo info(file.target());
    const QString path = info.path() + "/."_L1 + info.fileName() + ".lock"_L1;
    m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, privateFile);
    if (m_descriptor < 0) {
        return;
    }
    // Who waits for the file holds the place at the head of the queue meanwhile. So a process that writes again and
    // again cannot overtake one that waits: it has to go through the queue itself.
    const auto deadline = std::chrono::steady_clock::now() + 1s;
    if (awaitLock(m_descriptor, LockedByte::queue, deadline)) {
        m_isHeld = awaitLock(m_descriptor, LockedByte::file, deadline);
        (void)changeLock(m_descriptor, LockedByte::queue, F_UNLCK);
    }
}

DefaultsFile::Lock::~Lock()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

} // namespace orvesa
