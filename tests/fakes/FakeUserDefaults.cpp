#include "fakes/FakeUserDefaults.h"

#include <utility>

namespace orvesa {

std::optional<DefaultsValue> FakeUserDefaults::value(const QString &key) const
{
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

void FakeUserDefaults::set(const QString &key, const DefaultsValue &value)
{
    m_values[key] = value;
    m_writes.push_back({key, value});
    m_hasUnwrittenChanges = !m_isWritable;
}

void FakeUserDefaults::remove(const QString &key)
{
    m_values.erase(key);
    m_writes.push_back({key, std::nullopt});
    m_hasUnwrittenChanges = !m_isWritable;
}

std::optional<DefaultsDictionary> FakeUserDefaults::persistentDomain(const QString &name) const
{
    m_readDomains.push_back(name);
    const auto found = m_domains.find(name);
    return found == m_domains.end() ? std::nullopt : std::optional(found->second);
}

void FakeUserDefaults::setExternalChangeHandler(std::function<void()> handler)
{
    m_externalChangeHandler = std::move(handler);
}

void FakeUserDefaults::forgetCalls()
{
    m_writes.clear();
    m_readDomains.clear();
}

void FakeUserDefaults::prepare(const QString &key, const DefaultsValue &value)
{
    m_values[key] = value;
}

void FakeUserDefaults::preparePersistentDomain(const QString &name, const DefaultsDictionary &values)
{
    m_domains[name] = values;
}

void FakeUserDefaults::changeFromOutside(const QString &key, const std::optional<DefaultsValue> &value)
{
    if (value) {
        m_values[key] = *value;
    } else {
        m_values.erase(key);
    }
    if (m_externalChangeHandler) {
        m_externalChangeHandler();
    }
}

} // namespace orvesa
