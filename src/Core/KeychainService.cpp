#include "Core/KeychainService.h"

#include "Core/KeychainError.h"
#include "Platform/SecretBuffer.h"

#include <QStringDecoder>

#include <utility>

namespace orvesa {

namespace {

/// The secret's text, or nothing when the bytes are not UTF-8. A leading byte order mark is part of the secret.
std::optional<QString> decodedSecret(const QByteArray &data)
{
    QStringDecoder decoder(QStringConverter::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    QString text = decoder.decode(data);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text;
}

} // namespace

KeychainService::KeychainService(KeyStorePort &store, QString service, QStringList legacyServices)
    : m_store(store), m_service(std::move(service)), m_legacyServices(std::move(legacyServices))
{
}

QCoro::Task<std::optional<QString>> KeychainService::get(QString key) const
{
    co_return co_await find(key, &KeychainService::readOrNothing);
}

QCoro::Task<bool> KeychainService::hasValue(QString key, Failures failures) const
{
    const Reading reading = failures == Failures::thrown ? &KeychainService::read : &KeychainService::readOrNothing;
    std::optional<QString> secret = co_await find(key, reading);
    const bool isKey = secret.has_value() && !secret->isEmpty();
    if (secret) {
        clearSecret(*secret);
    }
    co_return isKey;
}

QCoro::Task<std::optional<QString>> KeychainService::find(QString key, Reading reading) const
{
    std::optional<QString> secret = co_await (this->*reading)(m_service, key);
    if (secret) {
        co_return secret;
    }
    for (qsizetype index = 0; index < m_legacyServices.size() && !secret; ++index) {
        secret = co_await (this->*reading)(m_legacyServices.at(index), key);
    }
    if (secret) {
        try {
            co_await set(*secret, key);
        } catch (const KeychainError &) {
            // The earlier item stays where it is, so the next read finds it again and tries to carry it forward anew.
        }
    }
    co_return secret;
}

QCoro::Task<void> KeychainService::set(QString value, QString key) const
{
    const SecretClearing clearingValue(value);
    QByteArray data = value.toUtf8();
    const SecretClearing clearingData(data);
    const KeyStoreQuery query = baseQuery(m_service, key);
    const qint32 updated = co_await m_store.update(query, data);
    if (updated == KeyStoreStatus::success) {
        co_return;
    }
    if (updated != KeyStoreStatus::itemNotFound) {
        throw KeychainError(updated);
    }
    const qint32 added = co_await m_store.add(query, data);
    if (added != KeyStoreStatus::success) {
        throw KeychainError(added);
    }
}

QCoro::Task<void> KeychainService::remove(QString key) const
{
    const qint32 status = co_await m_store.remove(baseQuery(m_service, key));
    if (status != KeyStoreStatus::success && status != KeyStoreStatus::itemNotFound) {
        throw KeychainError(status);
    }
}

KeyStoreQuery KeychainService::baseQuery(const QString &service, const QString &key) const
{
    return {service, key};
}

QCoro::Task<std::optional<QString>> KeychainService::read(QString service, QString key) const
{
    KeyStoreCopyResult result = co_await m_store.copyMatching(baseQuery(service, key));
    const SecretClearing clearing(result.data);
    if (result.status == KeyStoreStatus::itemNotFound) {
        co_return std::nullopt;
    }
    if (result.status != KeyStoreStatus::success) {
        throw KeychainError(result.status);
    }
    co_return decodedSecret(result.data);
}

QCoro::Task<std::optional<QString>> KeychainService::readOrNothing(QString service, QString key) const
{
    try {
        co_return co_await read(service, key);
    } catch (const KeychainError &) {
        co_return std::nullopt;
    }
}

} // namespace orvesa
