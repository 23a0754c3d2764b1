#pragma once

// Calls on the accessibility bus within one budget of waiting time.
//
// Main thread. A call waits 250 ms at most and all calls of one client together 500 ms, or as long as it was given. An
// application that let a call time out is not asked again by the same client. A failed call gives nothing.

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QString>
#include <QVariant>

#include <chrono>
#include <compare>
#include <optional>
#include <set>
#include <vector>

namespace orvesa {

/// An object on the accessibility bus.
struct ATSPIReference {
    QString busName;
    QString path;

    bool operator==(const ATSPIReference &) const = default;
};

/// Takes one reference off the front of what is being read.
const QDBusArgument &operator>>(const QDBusArgument &argument, ATSPIReference &reference);

/// Bits of a state set, by their numbers in the protocol (AtspiStateType in atspi-constants.h).
enum class ATSPIState { active = 1, enabled = 8, focused = 12, sensitive = 24, showing = 25, managesDescendants = 31 };

/// Roles by their numbers in the protocol (AtspiRole in atspi-constants.h).
namespace ATSPIRole {
inline constexpr quint32 menu = 33;
inline constexpr quint32 menuBar = 34;
inline constexpr quint32 passwordText = 40;
inline constexpr quint32 spinButton = 52;
inline constexpr quint32 terminal = 60;
inline constexpr quint32 text = 61;
inline constexpr quint32 toolBar = 63;
inline constexpr quint32 entry = 79;
} // namespace ATSPIRole

/// The states of an object.
class ATSPIStateSet final {
public:
    ATSPIStateSet() = default;
    /// From the protocol's list of 32-bit words, lowest first.
    explicit ATSPIStateSet(const QList<quint32> &words);

    [[nodiscard]] bool has(ATSPIState state) const;

private:
    quint64 m_bits = 0;
};

class ATSPIClient final {
public:
    static constexpr std::chrono::milliseconds totalBound{500};

    explicit ATSPIClient(QDBusConnection bus, std::chrono::milliseconds bound = totalBound);

    /// Another on the same bus, with waiting time of its own and on speaking terms with everybody.
    [[nodiscard]] ATSPIClient another(std::chrono::milliseconds bound) const { return ATSPIClient(m_bus, bound); }

    /// One call; `interface` is the part after "org.a11y.atspi.".
    struct Call {
        ATSPIReference object;
        QString interface;
        QString method;
        QVariantList arguments;
    };

    /// The arguments of the answer; nothing on an error, a time-out or a used-up budget. `interface` is the part after
    /// "org.a11y.atspi.".
    [[nodiscard]] std::optional<QVariantList> call(const ATSPIReference &object, const QString &interface,
                                                   const QString &method, const QVariantList &arguments = {});
    /// Several calls at once, which together take about as long as one. An answer, or nothing, for each.
    [[nodiscard]] std::vector<std::optional<QVariantList>> callTogether(const std::vector<Call> &calls);
    /// The same for calls with their interfaces' full names.
    [[nodiscard]] std::vector<std::optional<QVariantList>> sendTogether(const std::vector<Call> &calls)
    {
        return send(calls);
    }
    /// The call that asks for a property, with its full name. Its answer holds one QDBusVariant.
    [[nodiscard]] static Call propertyCall(const ATSPIReference &object, const QString &interface, const QString &name);
    /// What a call of GetChildren answered.
    [[nodiscard]] static std::vector<ATSPIReference> referencesIn(const std::optional<QVariantList> &answer);
    /// How many calls were made so far.
    [[nodiscard]] std::size_t callCount() const { return m_calls; }
    /// A property's value.
    [[nodiscard]] std::optional<QVariant> property(const ATSPIReference &object, const QString &interface,
                                                   const QString &name);
    /// Whether calls to this application still make sense: false once it let one time out or the budget is used up.
    [[nodiscard]] bool mayAsk(const QString &busName) const;

    [[nodiscard]] std::vector<ATSPIReference> children(const ATSPIReference &object);
    /// Nothing where there was no answer, which is not the same as no states.
    [[nodiscard]] std::optional<ATSPIStateSet> knownStates(const ATSPIReference &object);
    [[nodiscard]] ATSPIStateSet states(const ATSPIReference &object);
    /// The states of each, asked for at once.
    [[nodiscard]] std::vector<ATSPIStateSet> states(const std::vector<ATSPIReference> &objects);
    /// What a call of GetState answered.
    [[nodiscard]] static ATSPIStateSet statesIn(const std::optional<QVariantList> &answer);
    [[nodiscard]] std::optional<quint32> role(const ATSPIReference &object);
    [[nodiscard]] bool hasText(const ATSPIReference &object);
    /// The process behind a bus name, asked of the bus itself.
    [[nodiscard]] std::optional<qint64> processIdentifier(const QString &busName);
    /// The processes behind bus names, asked for at once.
    [[nodiscard]] std::vector<std::optional<qint64>> processIdentifiers(const std::vector<QString> &busNames);

private:
    /// Calls with their interfaces' full names.
    [[nodiscard]] std::vector<std::optional<QVariantList>> send(const std::vector<Call> &calls);
    [[nodiscard]] std::optional<QVariantList> send(const Call &call);
    [[nodiscard]] std::optional<QVariantList> answerTo(const QDBusPendingCall &pending, const QString &busName);

    QDBusConnection m_bus;
    std::chrono::nanoseconds m_left;
    std::set<QString> m_silent;
    std::size_t m_calls = 0;
};

} // namespace orvesa
