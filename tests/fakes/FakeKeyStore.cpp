#include "fakes/FakeKeyStore.h"

namespace orvesa {

QCoro::Task<KeyStoreCopyResult> FakeKeyStore::copyMatching(KeyStoreQuery query)
{
    const std::optional<qint32> scripted = begin(Operation::copyMatching, query);
    co_await m_gate.passed();
    if (const auto status = refusal(scripted)) {
        co_return KeyStoreCopyResult{*status, {}};
    }
    const auto found = m_items.find({query.service, query.account});
    if (found == m_items.end()) {
        co_return KeyStoreCopyResult{KeyStoreStatus::itemNotFound, {}};
    }
    co_return KeyStoreCopyResult{KeyStoreStatus::success, found->second};
}

QCoro::Task<qint32> FakeKeyStore::update(KeyStoreQuery query, QByteArray data)
{
    const std::optional<qint32> scripted = begin(Operation::update, query);
    co_await m_gate.passed();
    if (const auto status = refusal(scripted)) {
        co_return *status;
    }
    const auto found = m_items.find({query.service, query.account});
    if (found == m_items.end()) {
        co_return KeyStoreStatus::itemNotFound;
    }
    found->second = data;
    co_return KeyStoreStatus::success;
}

QCoro::Task<qint32> FakeKeyStore::add(KeyStoreQuery query, QByteArray data)
{
    const std::optional<qint32> scripted = begin(Operation::add, query);
    co_await m_gate.passed();
    if (const auto status = refusal(scripted)) {
        co_return *status;
    }
    const bool added = m_items.try_emplace({query.service, query.account}, data).second;
    co_return added ? KeyStoreStatus::success : duplicateItem;
}

QCoro::Task<qint32> FakeKeyStore::remove(KeyStoreQuery query)
{
    const std::optional<qint32> scripted = begin(Operation::remove, query);
    co_await m_gate.passed();
    if (const auto status = refusal(scripted)) {
        co_return *status;
    }
    const bool removed = m_items.erase({query.service, query.account}) != 0;
    co_return removed ? KeyStoreStatus::success : KeyStoreStatus::itemNotFound;
}

void FakeKeyStore::close()
{
    m_isClosed = true;
    m_gate.open();
}

void FakeKeyStore::setStatus(Operation operation, std::optional<qint32> status)
{
    if (status) {
        m_statuses[operation] = *status;
    } else {
        m_statuses.erase(operation);
    }
}

void FakeKeyStore::setStatus(Operation operation, const QString &account, qint32 status)
{
    m_accountStatuses[{operation, account}] = status;
}

void FakeKeyStore::setItem(const QString &service, const QString &account, const QByteArray &data)
{
    m_items[{service, account}] = data;
}

std::optional<QByteArray> FakeKeyStore::item(const QString &service, const QString &account) const
{
    const auto found = m_items.find({service, account});
    return found == m_items.end() ? std::nullopt : std::optional(found->second);
}

std::optional<qint32> FakeKeyStore::begin(Operation operation, const KeyStoreQuery &query)
{
    m_calls.push_back({operation, query.service, query.account});
    const auto ofAccount = m_accountStatuses.find({operation, query.account});
    if (ofAccount != m_accountStatuses.end()) {
        return ofAccount->second;
    }
    const auto found = m_statuses.find(operation);
    return found == m_statuses.end() ? std::nullopt : std::optional(found->second);
}

std::optional<qint32> FakeKeyStore::refusal(std::optional<qint32> scripted) const
{
    return m_isClosed ? KeyStoreStatus::userCanceled : scripted;
}

} // namespace orvesa
