#pragma once

// The process that cleans up after a desktop, also when the one that owns the desktop is killed (Guard.cpp).
//
// Main thread; owned by the Desktop. Its end is the end of everything that carries the mark, and of the desktop's
// folder.

#include <QProcess>
#include <QString>

namespace orvesa::desktop {

class DesktopGuard final {
public:
    DesktopGuard(const QString &mark, const QString &folder);
    /// Lets it do its work and waits until that is done.
    ~DesktopGuard();
    DesktopGuard(const DesktopGuard &) = delete;
    DesktopGuard &operator=(const DesktopGuard &) = delete;

    [[nodiscard]] qint64 pid() const { return m_process.processId(); }
    void add(qint64 group);
    void forget(qint64 group);

private:
    void tell(char sign, qint64 group);

    QProcess m_process;
};

} // namespace orvesa::desktop
