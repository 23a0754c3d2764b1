#pragma once

// A preferences database in memory that remembers every write in order. Main thread.

#include "Platform/UserDefaultsPort.h"

#include <vector>

namespace orvesa {

class FakeUserDefaults final : public UserDefaultsPort {
public:
    struct Write {
        QString key;
        std::optional<DefaultsValue> value; ///< absent for a removal
        bool operator==(const Write &) const = default;
    };

    [[nodiscard]] std::optional<DefaultsValue> value(const QString &key) const override;
    void set(const QString &key, const DefaultsValue &value) override;
    void remove(const QString &key) override;
    [[nodiscard]] std::optional<DefaultsDictionary> persistentDomain(const QString &name) const override;
    [[nodiscard]] bool hasUnwrittenChanges() const override { return m_hasUnwrittenChanges; }
    void setExternalChangeHandler(std::function<void()> handler) override;

    /// Puts a value there before a test begins: no write, no call of the handler.
    void prepare(const QString &key, const DefaultsValue &value);
    void preparePersistentDomain(const QString &name, const DefaultsDictionary &values);
    /// What another process's change looks like; no value removes the key.
    void changeFromOutside(const QString &key, const std::optional<DefaultsValue> &value);

    /// Changes are kept in memory only from now on, as on a full disk.
    void refuseWrites() { m_isWritable = false; }
    void forgetCalls();

    [[nodiscard]] const DefaultsDictionary &values() const { return m_values; }
    [[nodiscard]] const std::vector<Write> &writes() const { return m_writes; }
    /// The names of the domains that were asked for, in order.
    [[nodiscard]] const std::vector<QString> &readDomains() const { return m_readDomains; }
    [[nodiscard]] bool hasExternalChangeHandler() const { return static_cast<bool>(m_externalChangeHandler); }

private:
    DefaultsDictionary m_values;
    std::map<QString, DefaultsDictionary> m_domains;
    std::vector<Write> m_writes;
    mutable std::vector<QString> m_readDomains;
    bool m_isWritable = true;
    bool m_hasUnwrittenChanges = false;
    std::function<void()> m_externalChangeHandler;
};

} // namespace orvesa
