#pragma once

// The user-defaults database.
//
// Main thread. The system keeps the values and writes them to disk by itself. It does not tell of changes that another
// process makes to keys with dots in their names; so those are looked for when the program becomes active, which is
// when the user comes to its settings.

#include "Platform/UserDefaultsPort.h"

#include <memory>

namespace orvesa {

class FoundationUserDefaults final : public UserDefaultsPort {
public:
    /// `identifier` is the program's own domain.
    explicit FoundationUserDefaults(QString identifier);
    ~FoundationUserDefaults() override;
    Q_DISABLE_COPY_MOVE(FoundationUserDefaults)

    [[nodiscard]] std::optional<DefaultsValue> value(const QString &key) const override;
    void set(const QString &key, const DefaultsValue &value) override;
    void remove(const QString &key) override;
    [[nodiscard]] std::optional<DefaultsDictionary> persistentDomain(const QString &name) const override;
    void setExternalChangeHandler(std::function<void()> handler) override;

private:
    void lookForChanges();

    struct Observation;
    QString m_identifier;
    std::function<void()> m_handler;
    std::unique_ptr<Observation> m_observation;
};

} // namespace orvesa
