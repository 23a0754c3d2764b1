#pragma once

// Accessibility trust on Linux: the accessibility bus answers, and assistive technologies are switched on for the
// session (org.a11y.Status.IsEnabled).
//
// Main thread. The state is fetched when the object is made and follows the bus's signals after that, so isTrusted()
// answers from memory; only when it is asked before the first answer arrived does it wait, 250 ms at most. Without a
// session bus nothing is trusted.

#include "Platform/AccessibilityTrustPort.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace orvesa {

class ATSPITrust final : public QObject, public AccessibilityTrustPort {
    Q_OBJECT

public:
    explicit ATSPITrust(QObject *parent = nullptr);
    ~ATSPITrust() override;

    [[nodiscard]] bool isTrusted() const override;
    /// Calls the presenter, which shows the dialog whose Enable button calls enable().
    void requestTrust() override;

    /// Who shows the request to the user. It must itself see to showing one dialog at a time.
    void setRequestPresenter(std::function<void()> presenter);
    /// Switches assistive technologies on for the session. Returns at once; isTrusted() follows.
    void enable();

private Q_SLOTS:
    void propertiesChanged(const QString &interface, const QVariantMap &changed, const QStringList &invalidated);
    void ownerChanged(const QString &name, const QString &oldOwner, const QString &newOwner);

private:
    enum class State { unknown, untrusted, trusted };

    void fetch();
    void fetchNow() const;

    mutable State m_state = State::unknown;
    quint64 m_generation = 0;
    std::function<void()> m_presenter;
};

} // namespace orvesa
