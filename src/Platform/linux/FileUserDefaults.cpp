#include "Platform/linux/FileUserDefaults.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>

#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// The first line of a new file.
constexpr auto introduction = "# Preferences, one per line. Changes made here are taken over at once.\n";

QString defaultFolder()
{
    // By hand, since a relative or empty XDG_CONFIG_HOME counts as unset.
    const QString configured = QFile::decodeName(qgetenv("XDG_CONFIG_HOME"));
    return QDir::isAbsolutePath(configured) ? configured : QDir::homePath() + "/.config"_L1;
}

QString domainPath(const QString &folder, const QString &identifier)
{
    return folder + u'/' + identifier + ".conf"_L1;
}

enum class Folder { there, gone };

/// Takes what there is of events, and tells whether the watched folder was deleted or moved away.
Folder takeEvents(int watch)
{
    Folder folder = Folder::there;
    constexpr std::size_t bufferSize = 4096;
    alignas(inotify_event) char buffer[bufferSize];
    for (ssize_t size = ::read(watch, buffer, bufferSize); size > 0; size = ::read(watch, buffer, bufferSize)) {
        inotify_event event{};
        for (ssize_t place = 0; place < size; place += static_cast<ssize_t>(sizeof event + event.len)) {
            std::memcpy(&event, buffer + place, sizeof event);
            if ((event.mask & (IN_IGNORED | IN_MOVE_SELF)) != 0) {
                folder = Folder::gone;
            }
        }
    }
    return folder;
}

void takeOver(DefaultsDictionary &values, const std::map<QString, std::optional<DefaultsValue>> &changes)
{
    for (const auto &[key, value] : changes) {
        if (value) {
            values.insert_or_assign(key, *value);
        } else {
            values.erase(key);
        }
    }
}

} // namespace

FileUserDefaults::FileUserDefaults(QString identifier, QString folder)
    : m_folder(folder.isEmpty() ? defaultFolder() : std::move(folder)), m_identifier(std::move(identifier))
{
}

FileUserDefaults::~FileUserDefaults()
{
    stopWatching();
}

QString FileUserDefaults::filePath() const
{
    return domainPath(m_folder, m_identifier);
}

std::optional<DefaultsValue> FileUserDefaults::value(const QString &key) const
{
    load();
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

void FileUserDefaults::set(const QString &key, const DefaultsValue &value)
{
    change(key, value);
}

void FileUserDefaults::remove(const QString &key)
{
    change(key, std::nullopt);
}

void FileUserDefaults::load() const
{
    if (m_loaded) {
        return;
    }
    m_loaded = true;
    const DefaultsFile::Content content = DefaultsFile(filePath()).read();
    m_stamp = content.stamp;
    const auto document = understood(content);
    m_values = document ? document->values() : DefaultsDictionary{};
    takeOver(m_values, m_unwritten);
}

std::optional<DefaultsDocument> FileUserDefaults::understood(const DefaultsFile::Content &content) const
{
    if (content.reading == DefaultsFile::Reading::refused) {
        logOnce(u"cannot be read (%1); starting with defaults"_s.arg(content.trouble));
        return std::nullopt;
    }
    if (content.reading == DefaultsFile::Reading::absent) {
        return DefaultsDocument::parse(introduction);
    }
    auto document = DefaultsDocument::parse(content.bytes);
    if (!document) {
        logOnce(u"is damaged; starting with defaults"_s);
        return std::nullopt;
    }
    if (const int line = document->firstBrokenLine(); line != 0) {
        logOnce(u"line %1 is not understood and is left out"_s.arg(line));
    }
    return document;
}

void FileUserDefaults::change(const QString &key, const std::optional<DefaultsValue> &value)
{
    load();
    Changes changes = m_unwritten;
    changes.insert_or_assign(key, value);
    if (store(changes)) {
        m_unwritten.clear();
    } else {
        takeOver(m_values, changes);
        m_unwritten = std::move(changes);
    }
}

bool FileUserDefaults::store(const Changes &changes)
{
    const DefaultsFile file(filePath());
    if (!file.makeFolder()) {
        logOnce(u"cannot be written (no folder); changes are kept in memory"_s);
        return false;
    }
    const DefaultsFile::Lock lock(file);
    const DefaultsFile::Content content = file.read();
    auto document = understood(content);
    if (!document && content.reading == DefaultsFile::Reading::refused) {
        return false;
    }
    const bool isDamaged = !document;
    if (isDamaged) {
        document = DefaultsDocument::parse(introduction);
    }
    const bool wasChangedOutside = content.stamp != m_stamp && document->values() != m_values;
    bool losesSomething = isDamaged;
    for (const auto &[key, value] : changes) {
        losesSomething = losesSomething || document->hasBrokenValue(key);
        document->change(key, value);
    }
    QString copyPath;
    if (losesSomething && !file.keepCopy(content.bytes, copyPath)) {
        logOnce(u"cannot be kept beside itself; changes are kept in memory"_s);
        return false;
    }
    const bool isStillAbsent = content.reading == DefaultsFile::Reading::absent && document->values().empty();
    if (const QByteArray bytes = document->bytes(); !isStillAbsent && bytes != content.bytes) {
        QString trouble;
        const auto stamp = file.replace(bytes, lock, trouble);
        if (!stamp) {
            logOnce(u"cannot be written (%1); changes are kept in memory"_s.arg(trouble));
            return false;
        }
        m_stamp = *stamp;
    }
    m_values = document->values();
    if (m_handler && m_watch < 0) {
        startWatching(); // the folder was made anew
    }
    if (wasChangedOutside) {
        reportChange();
    }
    return true;
}

std::optional<DefaultsDictionary> FileUserDefaults::persistentDomain(const QString &name) const
{
    if (name.isEmpty() || name.contains(u'/')) {
        return std::nullopt;
    }
    const DefaultsFile::Content content = DefaultsFile(domainPath(m_folder, name)).read();
    if (content.reading != DefaultsFile::Reading::whole) {
        return std::nullopt;
    }
    const auto document = DefaultsDocument::parse(content.bytes);
    return document ? std::optional(document->values()) : std::nullopt;
}

void FileUserDefaults::setExternalChangeHandler(std::function<void()> handler)
{
    m_handler = std::move(handler);
    if (!m_handler) {
        stopWatching();
    } else if (m_watch < 0) {
        load();
        startWatching();
    }
}

void FileUserDefaults::startWatching()
{
    // The folder is watched, not the file, since whoever replaces the file replaces the watched one.
    const DefaultsFile file(filePath());
    file.makeFolder();
    m_watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_watch < 0 ||
        ::inotify_add_watch(m_watch, QFile::encodeName(file.folder()).constData(),
                            IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_MOVE_SELF | IN_ONLYDIR) < 0) {
        stopWatching();
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_watch, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { folderChanged(); });
}

void FileUserDefaults::stopWatching()
{
    if (m_notifier) {
        // It may be the one that is being activated.
        m_notifier->setEnabled(false);
        m_notifier->disconnect();
        m_notifier.release()->deleteLater();
    }
    if (m_watch >= 0) {
        ::close(std::exchange(m_watch, -1));
    }
}

void FileUserDefaults::folderChanged()
{
    // What happened to the file does not matter, only what it is now.
    if (takeEvents(m_watch) == Folder::gone) {
        stopWatching(); // until there is one again
    }
    if (DefaultsFile(filePath()).stamp() == m_stamp) {
        return;
    }
    const DefaultsDictionary before = std::exchange(m_values, {});
    m_loaded = false;
    load();
    if (m_values != before && m_handler) {
        const auto handler = m_handler; // it may remove itself
        handler();
    }
}

void FileUserDefaults::reportChange()
{
    // Not from inside the setter, whose caller does not expect to be called.
    if (m_notifier) {
        QMetaObject::invokeMethod(
            m_notifier.get(),
            [this] {
                if (const auto handler = m_handler) {
                    handler();
                }
            },
            Qt::QueuedConnection);
    }
}

void FileUserDefaults::logOnce(const QString &trouble) const
{
    if (m_logged.insert(trouble).second) {
        qWarning("OrvesaTranslate: %s %s", qUtf8Printable(filePath()), qUtf8Printable(trouble));
    }
}

} // namespace orvesa
