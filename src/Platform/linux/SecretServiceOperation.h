#pragma once

// One operation on the secret store: what it consists of, step by step. Main thread; lives in the frame of the
// coroutine that runs it.

#include "Platform/linux/SecretServiceConversation.h"

#include <vector>

namespace orvesa {

class SecretServiceOperation final {
public:
    using Path = QByteArray;
    struct Found {
        qint32 status = KeyStoreStatus::success;
        std::vector<Path> unlocked;
        std::vector<Path> locked;
    };

    explicit SecretServiceOperation(std::shared_ptr<SecretServiceSession> session);

    /// Each gives a status; success lets the operation go on.
    [[nodiscard]] QCoro::Task<qint32> open();
    [[nodiscard]] QCoro::Task<Found> search(KeyStoreQuery query);
    /// Unlocks the objects, through the desktop's prompt if need be.
    [[nodiscard]] QCoro::Task<qint32> unlock(std::vector<Path> paths);
    [[nodiscard]] QCoro::Task<KeyStoreCopyResult> secret(Path path);
    /// Finds the item and gives its secret. The search and the secret of the place where the item was the last time are
    /// asked for together, which saves a round trip when it is there still; what a guess gives counts only if the
    /// search confirms it.
    [[nodiscard]] QCoro::Task<KeyStoreCopyResult> copy(KeyStoreQuery query);
    [[nodiscard]] QCoro::Task<qint32> setSecret(Path path, QByteArray data);
    [[nodiscard]] QCoro::Task<qint32> remove(Path path);
    /// Makes an item in the default collection.
    [[nodiscard]] QCoro::Task<qint32> create(KeyStoreQuery query, QByteArray data);

private:
    using Waiting = SecretServiceConversation::Waiting;

    struct Collection {
        qint32 status = KeyStoreStatus::success;
        Path path; ///< "/" when there is none
    };

    [[nodiscard]] QCoro::Task<Collection> defaultCollection();
    /// Unlocks the default collection where there is one and it is locked.
    [[nodiscard]] QCoro::Task<qint32> prepareDefaultCollection();

    using Call = SecretServiceConversation::Call;
    [[nodiscard]] Call searchCall(const KeyStoreQuery &query);
    [[nodiscard]] Call secretCall(const Path &path);
    /// What an awaited search found.
    [[nodiscard]] Found found(GAsyncResult *result);
    /// The secret that an awaited call brought.
    [[nodiscard]] KeyStoreCopyResult copied(GAsyncResult *result);

    std::shared_ptr<SecretServiceSession> m_session;
    SecretServiceConversation m_conversation;
};

} // namespace orvesa
