#pragma once

// The program installed into a folder of its own, and the judges that look at it.
//
// Main thread. The folder goes with the object. Waits are bounded; what fails is a test failure with the tool's words.

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace orvesa::packaging {

struct ToolResult {
    int exitCode = -1; ///< -1: not started, crashed or too slow
    QByteArray output; ///< both streams
};

/// Runs a tool to its end.
[[nodiscard]] ToolResult run(const QString &program, const QStringList &arguments,
                             const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());

class Installation final {
public:
    /// Installs below `prefix` ("/usr") of a temporary folder.
    explicit Installation(const QString &prefix = QStringLiteral("/usr"));

    /// Where a file that belongs to `path` ("/usr/bin/x") really is.
    [[nodiscard]] QString file(const QString &path) const;
    [[nodiscard]] QByteArray content(const QString &path) const;
    /// Every installed file by its path below the folder, sorted.
    [[nodiscard]] QStringList files() const;
    /// An environment with home and session folders inside the installation's temporary folder.
    [[nodiscard]] QProcessEnvironment environment() const;

private:
    QTemporaryDir m_folder;
    QTemporaryDir m_home;
};

/// The value of a key in a group of a desktop file or D-Bus service file; empty without one.
[[nodiscard]] QString valueOf(const QByteArray &file, const QString &group, const QString &key);

} // namespace orvesa::packaging
