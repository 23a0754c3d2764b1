#pragma once

// One operation on the secret store: a few asynchronous calls of libsecret under one bound.
//
// Main thread; lives in the frame of the coroutine that runs it. When the bound passes, or the store object goes, the
// call in flight is cancelled and given up at once, whether or not the library reacts.

#include "Platform/KeyStorePort.h"
#include "Platform/linux/GLibContextPump.h"
#include "Platform/linux/SecretLibrary.h"
#include "Platform/linux/SecretServiceSession.h"

#include <QStringList>
#include <QTimer>

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
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
    ~SecretServiceOperation();
    Q_DISABLE_COPY_MOVE(SecretServiceOperation)

    /// Each gives a status; success lets the operation go on.
    [[nodiscard]] QCoro::Task<qint32> open();
    [[nodiscard]] QCoro::Task<Found> search(KeyStoreQuery query);
    /// Unlocks the objects, through the desktop's prompt if need be.
    [[nodiscard]] QCoro::Task<qint32> unlock(std::vector<Path> paths);
    [[nodiscard]] QCoro::Task<KeyStoreCopyResult> secret(Path path);
    [[nodiscard]] QCoro::Task<qint32> setSecret(Path path, QByteArray data);
    [[nodiscard]] QCoro::Task<qint32> remove(Path path);
    /// Makes an item in the default collection.
    [[nodiscard]] QCoro::Task<qint32> create(KeyStoreQuery query, QByteArray data);

    /// Ends the operation with the status.
    void abandon(qint32 status);

private:
    struct Pending;
    class Call;
    using Starter = std::function<void(GCancellable *, GAsyncReadyCallback, gpointer)>;
    enum class Waiting { forAnswer, forPrompt };

    [[nodiscard]] Call call(Starter starter);
    void setBound(Waiting waiting);
    /// The status of a failed call. Takes the error over.
    [[nodiscard]] qint32 statusOf(GError *error) const;
    [[nodiscard]] QCoro::Task<GVariant *> ask(QByteArray destination, QByteArray path, QByteArray interface,
                                              QByteArray method, GVariant *arguments);
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> owner(QByteArray busName);
    /// Makes sure that the default collection can take an item, as far as that needs the user.
    [[nodiscard]] QCoro::Task<qint32> prepareDefaultCollection();
    [[nodiscard]] QCoro::Task<qint32> dismissalStatus();

    std::shared_ptr<SecretServiceSession> m_session;
    std::shared_ptr<GLibContextPump> m_pump;
    const SecretLibrary *m_library = nullptr;
    GCancellable *m_cancellable = nullptr;
    GDBusConnection *m_bus = nullptr;
    SecretService *m_service = nullptr;
    QTimer m_timer;
    Waiting m_waiting = Waiting::forAnswer;
    std::optional<qint32> m_end; ///< set once the operation was given up
    std::shared_ptr<Pending> m_pending;
};

} // namespace orvesa
