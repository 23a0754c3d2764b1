#include "Platform/linux/SecretServiceKeyStore.h"

#include "Platform/linux/SecretServiceOperation.h"

#include <utility>

namespace orvesa {

namespace {

// Free functions with everything by value: they may outlive the object they were started from.

QCoro::Task<KeyStoreCopyResult> runCopy(std::shared_ptr<SecretServiceSession> session, KeyStoreQuery query)
{
    SecretServiceOperation operation(std::move(session));
    if (const qint32 status = co_await operation.open(); status != KeyStoreStatus::success) {
        co_return KeyStoreCopyResult{.status = status, .data = {}};
    }
    co_return co_await operation.copy(std::move(query));
}

/// Opens, searches and unlocks; every matching item, none of them locked any more.
QCoro::Task<SecretServiceOperation::Found> findAll(SecretServiceOperation &operation, KeyStoreQuery query)
{
    SecretServiceOperation::Found found;
    found.status = co_await operation.open();
    if (found.status != KeyStoreStatus::success) {
        co_return found;
    }
    found = co_await operation.search(std::move(query));
    if (found.status == KeyStoreStatus::success && !found.locked.empty()) {
        found.status = co_await operation.unlock(found.locked);
        found.unlocked.insert(found.unlocked.end(), found.locked.begin(), found.locked.end());
    }
    co_return found;
}

QCoro::Task<qint32> runUpdate(std::shared_ptr<SecretServiceSession> session, KeyStoreQuery query, QByteArray data)
{
    SecretServiceOperation operation(std::move(session));
    const auto found = co_await findAll(operation, std::move(query));
    qint32 status = found.status;
    for (const auto &path : found.unlocked) {
        if (status != KeyStoreStatus::success) {
            break;
        }
        status = co_await operation.setSecret(path, data);
    }
    co_return status;
}

QCoro::Task<qint32> runAdd(std::shared_ptr<SecretServiceSession> session, KeyStoreQuery query, QByteArray data)
{
    SecretServiceOperation operation(std::move(session));
    if (const qint32 status = co_await operation.open(); status != KeyStoreStatus::success) {
        co_return status;
    }
    co_return co_await operation.create(std::move(query), std::move(data));
}

QCoro::Task<qint32> runRemove(std::shared_ptr<SecretServiceSession> session, KeyStoreQuery query)
{
    SecretServiceOperation operation(std::move(session));
    const auto found = co_await findAll(operation, std::move(query));
    qint32 status = found.status;
    for (const auto &path : found.unlocked) {
        if (status != KeyStoreStatus::success) {
            break;
        }
        status = co_await operation.remove(path);
    }
    co_return status;
}

QCoro::Task<void> runWarmUp(std::shared_ptr<SecretServiceSession> session)
{
    SecretServiceOperation operation(std::move(session));
    (void)co_await operation.open();
}

} // namespace

SecretServiceKeyStore::SecretServiceKeyStore(QString productName, SecretServiceBounds bounds)
    : m_session(std::make_shared<SecretServiceSession>(std::move(productName), bounds))
{
}

SecretServiceKeyStore::~SecretServiceKeyStore()
{
    SecretServiceKeyStore::close();
}

void SecretServiceKeyStore::close()
{
    m_session->close();
}

QCoro::Task<KeyStoreCopyResult> SecretServiceKeyStore::copyMatching(KeyStoreQuery query)
{
    return runCopy(m_session, std::move(query));
}

QCoro::Task<qint32> SecretServiceKeyStore::update(KeyStoreQuery query, QByteArray data)
{
    return runUpdate(m_session, std::move(query), std::move(data));
}

QCoro::Task<qint32> SecretServiceKeyStore::add(KeyStoreQuery query, QByteArray data)
{
    return runAdd(m_session, std::move(query), std::move(data));
}

QCoro::Task<qint32> SecretServiceKeyStore::remove(KeyStoreQuery query)
{
    return runRemove(m_session, std::move(query));
}

void SecretServiceKeyStore::warmUp()
{
    runWarmUp(m_session);
}

} // namespace orvesa
