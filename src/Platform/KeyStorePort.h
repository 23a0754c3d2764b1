#pragma once

// The desktop's key store, shaped like the generic-password primitives of the macOS Security framework.
//
// Main thread. Calls suspend and never block; each one ends within the adapter's bound, also when the store hangs, is
// locked or has gone. Secrets are raw bytes (UTF-8 text by convention, no terminator).

#include <QCoroTask>

#include <QByteArray>
#include <QString>

namespace orvesa {

/// Result codes, in the numbering of the macOS Security framework (SecBase.h names in comments).
namespace KeyStoreStatus {
inline constexpr qint32 success = 0;                    // errSecSuccess
inline constexpr qint32 userCanceled = -128;            // userCanceledErr: the unlock prompt was dismissed
inline constexpr qint32 notAvailable = -25291;          // errSecNotAvailable: no key store is running
inline constexpr qint32 authorizationFailed = -25293;   // errSecAuthFailed: the store refused
inline constexpr qint32 itemNotFound = -25300;          // errSecItemNotFound
inline constexpr qint32 interactionNotAllowed = -25308; // errSecInteractionNotAllowed: locked and not unlockable
} // namespace KeyStoreStatus

/// Identifies one generic-password item. Other attributes that an item carries are ignored when searching.
struct KeyStoreQuery {
    QString service;
    QString account;
};

struct KeyStoreCopyResult {
    qint32 status = KeyStoreStatus::itemNotFound;
    QByteArray data; ///< empty unless status is success
};

class KeyStorePort {
public:
    virtual ~KeyStorePort() = default;

    /// The first matching item's secret.
    [[nodiscard]] virtual QCoro::Task<KeyStoreCopyResult> copyMatching(KeyStoreQuery query) = 0;
    /// Replaces the secret of an existing item; itemNotFound when there is none.
    [[nodiscard]] virtual QCoro::Task<qint32> update(KeyStoreQuery query, QByteArray data) = 0;
    /// Adds an item.
    [[nodiscard]] virtual QCoro::Task<qint32> add(KeyStoreQuery query, QByteArray data) = 0;
    /// Deletes the item; itemNotFound when there is none.
    [[nodiscard]] virtual QCoro::Task<qint32> remove(KeyStoreQuery query) = 0;
    /// Opens the connection ahead of the first use, so that the first request does not pay for it. Never prompts.
    virtual void warmUp() {}
    /// Ends what is under way, and everything that is asked from now on, with userCanceled. Those who wait hear of it
    /// before this returns.
    virtual void close() = 0;
};

} // namespace orvesa
