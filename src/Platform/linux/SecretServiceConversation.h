#pragma once

// A conversation with the secret store: asynchronous calls of libsecret and of the bus, awaited one after the other,
// under one bound.
//
// Main thread; lives in the frame of the coroutine that runs it. When the bound passes, or the store object goes, the
// call in flight is cancelled and given up at once, whether or not the library reacts, and so is every later one.

#include "Platform/KeyStorePort.h"
#include "Platform/linux/GLibContextPump.h"
#include "Platform/linux/SecretLibrary.h"
#include "Platform/linux/SecretServiceSession.h"

#include <QElapsedTimer>
#include <QTimer>

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>

namespace orvesa {

class SecretServiceConversation final {
public:
    class Call;
    /// Starts a call of the library.
    using Starter = std::function<void(GCancellable *, GAsyncReadyCallback, gpointer)>;

    enum class Waiting {
        forAnswer, ///< a store that does not answer by then is as good as none
        forUser,   ///< the store may be asking the user something; one that is alive is given the time that takes
    };

    struct VariantDeleter {
        void operator()(GVariant *variant) const { g_variant_unref(variant); }
    };
    using Variant = std::unique_ptr<GVariant, VariantDeleter>;
    struct Answer {
        qint32 status = KeyStoreStatus::success;
        Variant value; ///< null unless status is success
    };

    explicit SecretServiceConversation(std::shared_ptr<SecretServiceSession> session);
    ~SecretServiceConversation();
    Q_DISABLE_COPY_MOVE(SecretServiceConversation)

    /// Reaches the store. Nothing else may be called unless that gave success.
    [[nodiscard]] QCoro::Task<qint32> open();
    /// To be awaited: the call's result, or null when the conversation was given up.
    [[nodiscard]] Call call(Starter starter);
    /// A method of any object on the session bus.
    [[nodiscard]] QCoro::Task<Answer> ask(QByteArray destination, QByteArray path, QByteArray interface,
                                          QByteArray method, GVariant *arguments);
    /// What a prompt that led to nothing means: dismissed by the user, or nobody there to see it.
    [[nodiscard]] QCoro::Task<qint32> dismissalStatus();

    /// Sets the bound of what comes next.
    void expect(Waiting waiting);
    /// The status of a failed call. Takes the error over.
    [[nodiscard]] qint32 statusOf(GError *error) const;
    [[nodiscard]] bool hasEnded() const { return m_end.has_value(); }
    /// Ends the conversation with the status.
    void abandon(qint32 status);

    [[nodiscard]] const SecretLibrary &library() const { return *m_library; }
    [[nodiscard]] SecretService *service() const { return m_service; }
    [[nodiscard]] const QString &productName() const { return m_session->productName(); }

private:
    struct Pending;

    void boundPassed();
    /// Ends the conversation when the store leaves the bus: of a prompt that ends with it the library never hears.
    void watchStore();
    static void ownerChanged(GDBusConnection *bus, const gchar *sender, const gchar *path, const gchar *interface,
                             const gchar *signal, GVariant *arguments, gpointer data);
    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> owner(QByteArray name);
    static QCoro::Task<void> endUnlessAlive(std::shared_ptr<SecretServiceSession> session,
                                            std::weak_ptr<SecretServiceConversation *> waiting);

    std::shared_ptr<SecretServiceSession> m_session;
    std::shared_ptr<GLibContextPump> m_pump;
    const SecretLibrary *m_library = nullptr;
    GCancellable *m_cancellable = nullptr;
    GDBusConnection *m_bus = nullptr;
    SecretService *m_service = nullptr;
    QTimer m_timer;
    QElapsedTimer m_waited;
    Waiting m_waiting = Waiting::forAnswer;
    std::optional<qint32> m_end; ///< set once the conversation was given up
    std::shared_ptr<Pending> m_pending;
    guint m_subscription = 0;
    std::shared_ptr<SecretServiceConversation *> m_self; ///< for those who may ask later whether it still lasts
};

/// One call of the library, on its way.
class SecretServiceConversation::Call final {
public:
    Call(SecretServiceConversation &conversation, Starter starter);

    /// Begins the call before it is awaited, so that several are on their way at once. Whether it is ever awaited is
    /// up to the caller. The conversation must be open.
    void begin();

    [[nodiscard]] bool await_ready() const;
    void await_suspend(std::coroutine_handle<> job);
    [[nodiscard]] GAsyncResult *await_resume() const;

private:
    SecretServiceConversation &m_conversation;
    Starter m_starter;
    std::shared_ptr<Pending> m_pending;
};

} // namespace orvesa
