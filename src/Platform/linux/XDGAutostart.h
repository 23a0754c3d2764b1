#pragma once

// Start at login by an entry in the user's autostart folder, as the freedesktop autostart rules have it.
//
// Main thread. The entry names the program by its path, unless the shell finds the same program by its name.

#include "Platform/AutostartPort.h"

#include <QString>

namespace orvesa {

class XDGAutostart final : public AutostartPort {
public:
    /// `identifier` names the entry, `name` is what session managers show, `program` the path of the executable.
    XDGAutostart(QString identifier, QString name, QString program);

    [[nodiscard]] bool isOn() const override;
    [[nodiscard]] bool turnOn() override;
    [[nodiscard]] bool turnOff() override;

    /// A path as one word of an entry's command line.
    [[nodiscard]] static QString quoted(const QString &path);

private:
    [[nodiscard]] bool isFoundByName() const;
    [[nodiscard]] QString command() const;
    /// Without this file, after the program has been removed, session managers pass the entry over.
    [[nodiscard]] QString programFile() const;

    QString m_path;
    QString m_identifier;
    QString m_name;
    QString m_program;
};

} // namespace orvesa
