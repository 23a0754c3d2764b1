#include "App/DoctorCommand.h"

#include "AI/ServiceAddresses.h"
#include "AI/ServiceReach.h"
#include "App/DoctorSentences.h"
#include "App/StandardStreams.h"
#include "Core/KeychainError.h"
#include "Core/KeychainService.h"
#include "Core/SettingsStore.h"
#include "Models/AppError.h"
#include "Platform/AutostartPort.h"
#include "Platform/HotKeyPort.h"
#include "Platform/SingleInstancePort.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace orvesa {

using CommandLine::ExitCode;
using Verdict = DoctorFinding::Verdict;
using KeyStore = DesktopInspectionPort::KeyStore;

DoctorCommand::DoctorCommand(const Collaborators &collaborators, QString identifier, QString title)
    : m_with(collaborators), m_identifier(std::move(identifier)), m_title(std::move(title))
{
}

QCoro::Task<ExitCode> DoctorCommand::run(CommandLine::Doctor request) const
{
    const QList<DoctorFinding> findings = co_await examine(request);
    const bool isWritten = StandardStreams::writeOutput(DoctorReport::text(m_title, findings));
    co_return isWritten && !DoctorReport::isAnythingWrong(findings) ? ExitCode::success : ExitCode::failure;
}

QCoro::Task<QList<DoctorFinding>> DoctorCommand::examine(CommandLine::Doctor request) const
{
    const KeyStore store = m_with.desktop.keyStore();
    QList<DoctorFinding> findings{session(), accessibility(), DoctorSentences::keyStore(store)};
    const DoctorFinding keyFinding = co_await key(store);
    findings.append(keyFinding);
    findings.append(tray());
    findings.append(shortcuts());
    findings.append(DoctorSentences::screenCapture(m_with.desktop.screenCapture()));
    const DoctorFinding recognitionFinding = co_await recognition();
    findings.append(recognitionFinding);
    findings.append({Verdict::good, u"Start at login"_s, m_with.autostart.isOn() ? u"on"_s : u"off"_s, {}});
    if (request.reach == CommandLine::Doctor::Reach::network) {
        const DoctorFinding networkFinding = co_await network();
        findings.append(networkFinding);
    }
    co_return findings;
}

DoctorFinding DoctorCommand::session() const
{
    return DoctorSentences::session(m_with.desktop.session(), m_with.desktop.hasDisplay(),
                                    m_with.desktop.desktopName());
}

DoctorFinding DoctorCommand::accessibility() const
{
    return DoctorSentences::accessibility(m_with.desktop.accessibility());
}

DoctorFinding DoctorCommand::tray() const
{
    return DoctorSentences::tray(m_with.desktop.tray());
}

QList<DoctorFinding> DoctorCommand::shortcuts() const
{
    const std::optional<QList<quint32>> held = m_with.instance.heldShortcuts(m_identifier);
    QList<DoctorFinding> findings{DoctorSentences::utility(held.has_value())};
    for (const HotKeyAction action : allCases<HotKeyAction>()) {
        findings.append(shortcut(hotKeyIdentifier(action), rawValue(action), m_with.settings.combo(action), held));
    }
    const std::vector<CustomPrompt> &prompts = m_with.settings.customPrompts();
    for (std::size_t index = 0; index < prompts.size(); ++index) {
        if (prompts[index].hotKey) {
            findings.append(
                shortcut(promptHotKeyIdentifier(index), u"prompt %1"_s.arg(index + 1), *prompts[index].hotKey, held));
        }
    }
    return findings;
}

DoctorFinding DoctorCommand::shortcut(quint32 identifier, const QString &subject, const KeyCombo &combo,
                                      const std::optional<QList<quint32>> &held) const
{
    const QString name = u"Shortcut %1 of %2"_s.arg(combo.displayText(), subject);
    const bool isHeld = held && held->contains(identifier);
    if (m_with.desktop.session() == DesktopInspectionPort::Session::wayland) {
        // Asking the portal would ask the user. The utility may hold what it has asked a portal for that has none.
        const bool hasPortal = m_with.desktop.hasShortcutPortal();
        if (!isHeld || !hasPortal) {
            return DoctorSentences::portalShortcut(name, hasPortal);
        }
    }
    if (isHeld) {
        return {Verdict::good, name, u"held by the utility"_s, {}};
    }
    if (!m_with.desktop.hasDisplay()) {
        // One thing is wrong then, and it has been said.
        return {Verdict::note, name, u"not looked for, because there is no display"_s, {}};
    }
    // Taken for a moment: what the keyboard answers is the finding.
    const HotKeyRegistration registration =
        m_with.hotKeys.registerHotKey(combo.keyCode, combo.carbonModifiers, {0, identifier});
    if (registration.status == HotKeyStatus::noErr) {
        m_with.hotKeys.unregisterHotKey(registration.reference);
    }
    return DoctorSentences::shortcut(name, registration.status, held.has_value());
}

QCoro::Task<DoctorFinding> DoctorCommand::key(KeyStore store) const
{
    const AIProviderType type = m_with.settings.activeConfig().providerType;
    if (store != KeyStore::unlocked) {
        // Asking a locked store would open its prompt.
        co_return DoctorSentences::keyNotLookedFor(type);
    }
    std::optional<bool> isStored;
    try {
        isStored = co_await m_with.keychain.hasValue(keychainAccount(type), KeychainService::Failures::thrown);
    } catch (const KeychainError &) {
        // Its number says nothing to anybody; the sentence for this is the same whatever it is.
        isStored.reset();
    }
    co_return DoctorSentences::key(type, isStored);
}

QCoro::Task<DoctorFinding> DoctorCommand::recognition() const
{
    const std::optional<QStringList> missing = co_await m_with.desktop.missingRecognitionLanguages();
    co_return DoctorSentences::recognition(missing);
}

QCoro::Task<DoctorFinding> DoctorCommand::network() const
{
    const AIProviderType type = m_with.settings.activeConfig().providerType;
    QUrl address;
    try {
        address = QUrl(m_with.addresses.base(type));
    } catch (const AppError &error) {
        // It names the variable, and does not repeat what that holds.
        co_return DoctorFinding{
            Verdict::wrong, u"Network"_s,
            u"the address that the environment gives for %1 is not allowed"_s.arg(displayName(type)), error.message()};
    }
    const ServiceReach::Result result = co_await m_with.reach.ask(address);
    co_return DoctorSentences::network(displayName(type), result);
}

} // namespace orvesa
