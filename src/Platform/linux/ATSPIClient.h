#pragma once

// Calls on the accessibility bus within one budget of waiting time.
//
// Main thread. An application that let a call time out is not asked again by the same client; when the budget is used up,
// nothing is asked any more. A failed call gives nothing.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>

#include <chrono>
#include <optional>
#include <set>
#include <vector>

namespace orvesa {

/// An object on the accessibility bus.
struct ATSPIReference {
    QString busName;
    QString path;

    [[nodiscard]] bool isNull() const;
    auto operator<=>(const ATSPIReference &) const = default;
};

/// Numbers of the AT-SPI protocol.
namespace ATSPIState {
inline constexpr int active = 1;
inline constexpr int focused = 12;
} // namespace ATSPIState

namespace ATSPIRole {
inline constexpr quint32 passwordText = 40;
inline constexpr quint32 terminal = 60;
inline constexpr quint32 text = 61;
inline constexpr quint32 entry = 79;
} // namespace ATSPIRole

class ATSPIClient final {
public:
    static constexpr std::chrono::milliseconds totalBound{500};

    explicit ATSPIClient(QDBusConnection bus);

    /// The arguments of the answer; nothing on an error, a time-out or a used-up budget.
    [[nodiscard]] std::optional<QVariantList> call(const ATSPIReference &object, const QString &interface,
                                                   const QString &method, const QVariantList &arguments = {});

    [[nodiscard]] std::vector<ATSPIReference> children(const ATSPIReference &object);
    [[nodiscard]] quint64 states(const ATSPIReference &object);
    [[nodiscard]] quint32 role(const ATSPIReference &object);
    [[nodiscard]] bool hasInterface(const ATSPIReference &object, const QString &interface);
    [[nodiscard]] std::optional<ATSPIReference> parent(const ATSPIReference &object);
    [[nodiscard]] std::optional<int> indexInParent(const ATSPIReference &object);
    /// The process behind a bus name, asked of the bus itself.
    [[nodiscard]] std::optional<qint64> processIdentifier(const QString &busName);

private:
    QDBusConnection m_bus;
    std::chrono::nanoseconds m_left = totalBound;
    std::set<QString> m_silent;
};

[[nodiscard]] bool hasState(quint64 states, int state);

} // namespace orvesa
