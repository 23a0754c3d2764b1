#pragma once

// A key store in memory. Its statuses can be scripted per operation, and its answers can be held back. Main thread.

#include "Platform/KeyStorePort.h"
#include "fakes/Gate.h"

#include <map>
#include <optional>
#include <vector>

namespace orvesa {

class FakeKeyStore final : public KeyStorePort {
public:
    enum class Operation { copyMatching, update, add, remove };

    struct Call {
        Operation operation;
        QString service;
        QString account;
        bool operator==(const Call &) const = default;
    };

    static constexpr qint32 duplicateItem = -25299; // errSecDuplicateItem

    [[nodiscard]] QCoro::Task<KeyStoreCopyResult> copyMatching(KeyStoreQuery query) override;
    [[nodiscard]] QCoro::Task<qint32> update(KeyStoreQuery query, QByteArray data) override;
    [[nodiscard]] QCoro::Task<qint32> add(KeyStoreQuery query, QByteArray data) override;
    [[nodiscard]] QCoro::Task<qint32> remove(KeyStoreQuery query) override;
    void warmUp() override { ++m_warmUps; }
    /// Opens the gate, too.
    void close() override;

    /// Every later call of the operation ends with this status and does nothing; no value restores ordinary behaviour.
    void setStatus(Operation operation, std::optional<qint32> status);

    /// The same for one account only: an item in a keyring that is locked beside one that is open.
    void setStatus(Operation operation, const QString &account, qint32 status);

    void setItem(const QString &service, const QString &account, const QByteArray &data);
    [[nodiscard]] std::optional<QByteArray> item(const QString &service, const QString &account) const;
    [[nodiscard]] std::size_t itemCount() const { return m_items.size(); }

    [[nodiscard]] const std::vector<Call> &calls() const { return m_calls; }
    [[nodiscard]] int warmUps() const { return m_warmUps; }
    /// While it is closed, calls wait at it before they look at anything.
    [[nodiscard]] Gate &gate() { return m_gate; }

private:
    using Identity = std::pair<QString, QString>;

    /// Notes the call; gives the scripted status if there is one.
    [[nodiscard]] std::optional<qint32> begin(Operation operation, const KeyStoreQuery &query);
    /// What the call ends with without having done anything, if it does.
    [[nodiscard]] std::optional<qint32> refusal(std::optional<qint32> scripted) const;

    std::map<Identity, QByteArray> m_items;
    std::map<Operation, qint32> m_statuses;
    std::map<std::pair<Operation, QString>, qint32> m_accountStatuses;
    std::vector<Call> m_calls;
    Gate m_gate;
    int m_warmUps = 0;
    bool m_isClosed = false;
};

} // namespace orvesa
