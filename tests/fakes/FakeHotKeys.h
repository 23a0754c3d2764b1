#pragma once

// The system's side of global shortcuts: refuses a combination that is taken and delivers presses. Main thread.

#include "Platform/HotKeyPort.h"

#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace orvesa {

class FakeHotKeys final : public HotKeyPort {
public:
    struct Registration {
        quint32 keyCode = 0;
        quint32 modifiers = 0;
        HotKeyID id;
        QString keyLabel;
    };

    [[nodiscard]] qint32 installHandler(Handler handler) override;
    void removeHandler() override;
    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers, HotKeyID id) override;
    qint32 unregisterHotKey(HotKeyRef reference) override;
    void labelKey(HotKeyID id, const QString &keyLabel) override;

    /// Delivers an event for the identifier, registered or not. eventNotHandled when no handler is installed.
    qint32 fire(HotKeyID id);
    /// Presses the keys; absent when they are nobody's shortcut.
    std::optional<qint32> press(quint32 keyCode, quint32 modifiers);

    void setInstallStatus(qint32 status) { m_installStatus = status; }
    /// Every later registration ends with this status; noErr with `reference` none is an answer without a reference.
    void setRegisterAnswer(std::optional<HotKeyRegistration> answer) { m_registerAnswer = answer; }
    /// Another program takes the combination.
    void takeByAnother(quint32 keyCode, quint32 modifiers) { m_takenByAnother.insert({keyCode, modifiers}); }

    [[nodiscard]] const std::map<HotKeyRef, Registration> &registrations() const { return m_registrations; }
    [[nodiscard]] std::size_t liveRegistrations() const { return m_registrations.size(); }
    [[nodiscard]] const std::vector<HotKeyRef> &unregistered() const { return m_unregistered; }
    [[nodiscard]] bool isHandlerInstalled() const { return static_cast<bool>(m_handler); }
    [[nodiscard]] int installs() const { return m_installs; }

private:
    Handler m_handler;
    std::map<HotKeyRef, Registration> m_registrations;
    std::map<quint32, QString> m_labels;
    std::set<std::pair<quint32, quint32>> m_takenByAnother;
    std::vector<HotKeyRef> m_unregistered;
    std::optional<HotKeyRegistration> m_registerAnswer;
    HotKeyRef m_lastReference = 0;
    qint32 m_installStatus = HotKeyStatus::noErr;
    int m_installs = 0;
};

} // namespace orvesa
