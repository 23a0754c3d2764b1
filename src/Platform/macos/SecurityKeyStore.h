#pragma once

// Generic passwords in the user's keychain, through the Security framework.
//
// Main thread. The framework's calls block, for as long as the user takes when the system asks whether the program may
// read an item, so each is made in a thread of its own. Items carry class, service, account and data, nothing else;
// for everything else the system's defaults hold.

#include "Platform/KeyStorePort.h"

#include <chrono>
#include <functional>
#include <stop_token>

namespace orvesa {

class SecurityKeyStore final : public KeyStorePort {
public:
    /// Long enough for the system's own prompt.
    static constexpr std::chrono::milliseconds defaultBound = std::chrono::minutes(2);

    explicit SecurityKeyStore(std::chrono::milliseconds bound = defaultBound);
    ~SecurityKeyStore() override;
    Q_DISABLE_COPY_MOVE(SecurityKeyStore)

    [[nodiscard]] QCoro::Task<KeyStoreCopyResult> copyMatching(KeyStoreQuery query) override;
    [[nodiscard]] QCoro::Task<qint32> update(KeyStoreQuery query, QByteArray data) override;
    [[nodiscard]] QCoro::Task<qint32> add(KeyStoreQuery query, QByteArray data) override;
    [[nodiscard]] QCoro::Task<qint32> remove(KeyStoreQuery query) override;
    void close() override;

private:
    [[nodiscard]] QCoro::Task<qint32> status(std::function<qint32()> call);
    /// The status of a call that nobody waits for any more.
    [[nodiscard]] qint32 unanswered() const;

    std::chrono::milliseconds m_bound;
    std::stop_source m_closing;
};

} // namespace orvesa
