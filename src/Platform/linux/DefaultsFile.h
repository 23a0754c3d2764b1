#pragma once

// A small private file that is always replaced as a whole. Any thread; nothing is cached.
//
// Readers see the old or the new content, never a part: new content goes to a temporary file beside it (mode 0600), to
// disk, and then takes the name; the folder follows a moment later. A symbolic link is followed, so that a file kept
// elsewhere stays there. Folders are made with 0700.

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvesa {

class DefaultsFile final {
public:
    /// Tells one content from another without reading it.
    struct Stamp {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 modified = 0;
        qint64 size = -1;
        bool operator==(const Stamp &) const = default;
    };

    enum class Reading { whole, absent, refused };

    struct Content {
        Reading reading = Reading::absent;
        QByteArray bytes;
        Stamp stamp;
        QString trouble; ///< why it was refused
    };

    /// Excludes other processes from changing the file while it lives; they are served in turns. Waits for at most a
    /// second: a process that was stopped while it held the lock must not hold up everyone else, and replacing stays
    /// safe without it.
    class Lock final {
    public:
        explicit Lock(const DefaultsFile &file);
        ~Lock();
        Q_DISABLE_COPY_MOVE(Lock)

        [[nodiscard]] bool isHeld() const { return m_isHeld; }

    private:
        int m_descriptor = -1;
        bool m_isHeld = false;
    };

    explicit DefaultsFile(QString path);

    /// Refused: anything but a readable regular file of at most 16 MiB.
    [[nodiscard]] Content read() const;
    [[nodiscard]] Stamp stamp() const;
    /// The new content's stamp; nothing when it could not be written, and why.
    [[nodiscard]] std::optional<Stamp> replace(const QByteArray &bytes, const Lock &lock, QString &trouble) const;
    /// Keeps the present content beside the file, under the first free name of ".damaged", ".damaged.2" and so on.
    [[nodiscard]] bool keepCopy(const QByteArray &bytes, QString &copyPath) const;
    /// Makes the folder; whether it is there.
    bool makeFolder() const;
    /// The folder that really holds the file.
    [[nodiscard]] QString folder() const;

private:
    [[nodiscard]] QString target() const;

    QString m_path;
};

} // namespace orvesa
