#pragma once

// The user's preferences database: typed values by key, in named domains.
//
// Main thread. A write is on disk when set() or remove() returns. Nothing is thrown: what cannot be read is absent,
// what cannot be written is logged once by the adapter and kept in memory.

#include <QByteArray>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <variant>

namespace orvesa {

using DefaultsValue = std::variant<bool, qint64, double, QString, QByteArray>;
using DefaultsDictionary = std::map<QString, DefaultsValue>;

class UserDefaultsPort {
public:
    virtual ~UserDefaultsPort() = default;

    /// The value stored under the key in the program's own domain.
    [[nodiscard]] virtual std::optional<DefaultsValue> value(const QString &key) const = 0;
    virtual void set(const QString &key, const DefaultsValue &value) = 0;
    virtual void remove(const QString &key) = 0;

    /// Whether a change is kept in memory only, because it could not be written. It is written with the next one that
    /// can.
    [[nodiscard]] virtual bool hasUnwrittenChanges() const { return false; }

    /// All values of another domain (an earlier release's); absent when that domain does not exist.
    [[nodiscard]] virtual std::optional<DefaultsDictionary> persistentDomain(const QString &name) const = 0;

    /// Called after values changed from outside this process. At most one handler; an empty one removes it.
    virtual void setExternalChangeHandler(std::function<void()> handler) = 0;
};

} // namespace orvesa
