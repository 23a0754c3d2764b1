#pragma once

// The one place where the providers' API keys are kept: the desktop's key store, and nowhere else.
//
// One secret string per account name. A key found only under an earlier identity of the program is copied to the
// current one the first time it is read. Nothing is cached: every call goes to the store, so a change made by another
// process is seen at the next call. Main thread; operations suspend while the store (or its unlock prompt) answers.

#include "Platform/KeyStorePort.h"

#include <QCoroTask>

#include <QString>
#include <QStringList>

#include <optional>

namespace orvesa {

class KeychainService final {
public:
    /// `service` names new items (the bundle identifier); `legacyServices` are searched in order when it has none.
    /// The store must outlive the service.
    KeychainService(KeyStorePort &store, QString service, QStringList legacyServices);

    /// The secret of the account, or nothing. Every failure reads as nothing.
    [[nodiscard]] QCoro::Task<std::optional<QString>> get(QString key) const;

    /// What becomes of a store that cannot be asked, for whatever status but success and "not found".
    enum class Failures {
        readAsNothing,
        thrown, ///< as KeychainError, at the first one: nothing more is asked then
    };

    /// Whether get() would give a non-empty string; carries an earlier identity's key forward like it.
    [[nodiscard]] QCoro::Task<bool> hasValue(QString key, Failures failures = Failures::readAsNothing) const;

    /// Stores the secret under the current service, replacing an earlier one. Throws KeychainError.
    [[nodiscard]] QCoro::Task<void> set(QString value, QString key) const;

    /// Removes the current service's item; a missing one is success. Throws KeychainError.
    [[nodiscard]] QCoro::Task<void> remove(QString key) const;

private:
    [[nodiscard]] KeyStoreQuery baseQuery(const QString &service, const QString &key) const;
    /// Throws KeychainError for every status but success and "not found".
    [[nodiscard]] QCoro::Task<std::optional<QString>> read(QString service, QString key) const;
    /// The same without a failure: that reads as nothing.
    [[nodiscard]] QCoro::Task<std::optional<QString>> readOrNothing(QString service, QString key) const;
    using Reading = QCoro::Task<std::optional<QString>> (KeychainService::*)(QString, QString) const;
    /// Searches the services in their order, and carries what an earlier one has forward.
    [[nodiscard]] QCoro::Task<std::optional<QString>> find(QString key, Reading reading) const;

    KeyStorePort &m_store;
    QString m_service;
    QStringList m_legacyServices;
};

} // namespace orvesa
