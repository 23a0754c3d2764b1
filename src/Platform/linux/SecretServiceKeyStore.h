#pragma once

// The desktop's secret store (GNOME Keyring, KWallet, KeePassXC) through libsecret.
//
// Main thread; every operation is asynchronous and ends within its bound. Items carry the attributes "service" and
// "account"; others, and the schema, are ignored when searching. New items go to the user's default collection; where
// there is none, the store makes one. A locked collection is unlocked through the desktop's own prompt.
// Construction is free: the library is loaded and the bus is used at the first operation or at warmUp(). No bus is ever
// started. An operation that is running when the object is destroyed is cancelled and still ends with a status.

#include "Platform/KeyStorePort.h"

#include <chrono>
#include <memory>

namespace orvesa {

class SecretServiceSession;

struct SecretServiceBounds {
    std::chrono::milliseconds answer{5000};   ///< for a store that does not answer
    std::chrono::milliseconds prompt{120000}; ///< for one that is alive while it may be showing a prompt
};

class SecretServiceKeyStore final : public KeyStorePort {
public:
    /// `productName` begins the label that the user sees in the store's own programs: "Orvesa Translate:
    /// openai_api_key".
    explicit SecretServiceKeyStore(QString productName, SecretServiceBounds bounds = {});
    ~SecretServiceKeyStore() override;

    Q_DISABLE_COPY_MOVE(SecretServiceKeyStore)

    [[nodiscard]] QCoro::Task<KeyStoreCopyResult> copyMatching(KeyStoreQuery query) override;
    [[nodiscard]] QCoro::Task<qint32> update(KeyStoreQuery query, QByteArray data) override;
    [[nodiscard]] QCoro::Task<qint32> add(KeyStoreQuery query, QByteArray data) override;
    [[nodiscard]] QCoro::Task<qint32> remove(KeyStoreQuery query) override;
    void warmUp() override;
    void close() override;

private:
    std::shared_ptr<SecretServiceSession> m_session;
};

} // namespace orvesa
