#pragma once

// One page on what the utility finds on this desktop, for a bug report: for each thing that is wrong, what to do. It
// holds no text of the user's, no key, no name of a host or a prompt.
//
// Main thread, inside a running core application, in a process of its own. The network is asked only when wanted.

#include "App/CommandLine.h"
#include "App/DoctorReport.h"
#include "Platform/DesktopInspectionPort.h"

#include <QCoroTask>

namespace orvesa {

class AutostartPort;
class HotKeyPort;
class KeychainService;
struct KeyCombo;
class ServiceAddresses;
class ServiceReach;
class SettingsStore;
class SingleInstancePort;

class DoctorCommand final {
public:
    struct Collaborators {
        DesktopInspectionPort &desktop;
        HotKeyPort &hotKeys;
        SingleInstancePort &instance;
        const SettingsStore &settings;
        const KeychainService &keychain;
        const AutostartPort &autostart;
        const ServiceAddresses &addresses;
        ServiceReach &reach;
    };

    /// `identifier` is that of the running instance, `title` the page's first line. All must outlive the command.
    DoctorCommand(const Collaborators &collaborators, QString identifier, QString title);

    [[nodiscard]] QCoro::Task<CommandLine::ExitCode> run(CommandLine::Doctor request) const;
    [[nodiscard]] QCoro::Task<QList<DoctorFinding>> examine(CommandLine::Doctor request) const;

private:
    [[nodiscard]] DoctorFinding session() const;
    [[nodiscard]] DoctorFinding accessibility() const;
    [[nodiscard]] DoctorFinding tray() const;
    [[nodiscard]] QList<DoctorFinding> shortcuts() const;
    [[nodiscard]] DoctorFinding shortcut(quint32 identifier, const QString &subject, const KeyCombo &combo,
                                         const std::optional<QList<quint32>> &held) const;
    [[nodiscard]] QCoro::Task<DoctorFinding> key(DesktopInspectionPort::KeyStore store) const;
    [[nodiscard]] QCoro::Task<DoctorFinding> recognition() const;
    [[nodiscard]] QCoro::Task<DoctorFinding> network() const;

    Collaborators m_with;
    QString m_identifier;
    QString m_title;
};

} // namespace orvesa
