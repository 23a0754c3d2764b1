#pragma once

// A tiny disk of its own, for showing what happens when it is full or may not be written.
//
// For a forked child only, with one thread: it moves the calling process into a mount namespace, which ends with the
// process. An ordinary user gets it through a user namespace. Where neither is allowed, shared memory serves if that is
// itself a small disk.

#include <QString>

namespace orvesa::tests {

class SmallDisk final {
public:
    /// Throws std::runtime_error when there is no way to get one.
    explicit SmallDisk(const QString &mountPoint);
    ~SmallDisk();
    Q_DISABLE_COPY_MOVE(SmallDisk)

    [[nodiscard]] const QString &folder() const { return m_folder; }
    /// Uses up all room but that of so many blocks of 4 KiB.
    void fillBut(int blocks);
    void empty();
    /// Whether it was possible; shared memory stays writable.
    [[nodiscard]] bool makeReadOnly();
    void makeWritable();

private:
    [[nodiscard]] QByteArray fillerPath() const;

    QString m_folder;
    bool m_isMounted = false;
};

} // namespace orvesa::tests
