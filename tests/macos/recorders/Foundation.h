#pragma once

// The stand-in for Foundation's preferences database and notifications. Main thread.

#include "macos/recorders/ObjectiveC.h"

#include <optional>

namespace orvesa::recorders {

/// The database of one user; one at a time.
class DefaultsDatabase final {
public:
    using Domain = std::map<QString, Object *>;

    explicit DefaultsDatabase(QString ownDomain);
    ~DefaultsDatabase();
    DefaultsDatabase(const DefaultsDatabase &) = delete;
    DefaultsDatabase &operator=(const DefaultsDatabase &) = delete;

    [[nodiscard]] static DefaultsDatabase *current();

    /// Takes the value's reference over; none removes it.
    void set(const QString &domain, const QString &key, Object *value);
    [[nodiscard]] Object *value(const QString &key) const;
    /// A dictionary for its caller; none where the domain is empty.
    [[nodiscard]] Object *domain(const QString &name) const;
    [[nodiscard]] const QString &ownDomain() const { return m_ownDomain; }

private:
    QString m_ownDomain;
    std::map<QString, Domain> m_domains;
};

/// Posts to everybody who listens.
void postNotification(const QString &name);
[[nodiscard]] std::size_t observers();

} // namespace orvesa::recorders
