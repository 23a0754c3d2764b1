#include "Platform/linux/SecretServiceConversation.h"

#include "Platform/linux/SecretServiceStatus.h"
#include "Platform/linux/SessionBus.h"

#include <algorithm>
#include <utility>

namespace orvesa {

namespace {

constexpr auto secretsName = "org.freedesktop.secrets";
constexpr auto secretsPath = "/org/freedesktop/secrets";
constexpr auto busName = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";

} // namespace

/// The state of one call; outlives the conversation when that gives up before the library calls back.
struct SecretServiceConversation::Pending {
    const SecretLibrary *library = nullptr;
    std::shared_ptr<GLibContextPump> pump;
    std::coroutine_handle<> job;
    GAsyncResult *result = nullptr;

    ~Pending()
    {
        if (result != nullptr) {
            library->objectUnref(result);
        }
    }

    static void completed(GObject *, GAsyncResult *result, gpointer data)
    {
        const std::unique_ptr<std::shared_ptr<Pending>> owned(static_cast<std::shared_ptr<Pending> *>(data));
        const std::shared_ptr<Pending> pending = *owned;
        pending->result = static_cast<GAsyncResult *>(pending->library->objectRef(result));
        if (const auto job = std::exchange(pending->job, nullptr)) {
            job.resume();
        }
    }
};

SecretServiceConversation::Call::Call(SecretServiceConversation &conversation, Starter starter)
    : m_conversation(conversation), m_starter(std::move(starter)), m_pending(std::make_shared<Pending>())
{
    m_pending->library = conversation.m_library;
    m_pending->pump = conversation.m_pump;
}

void SecretServiceConversation::Call::begin()
{
    if (m_conversation.hasEnded() || !m_starter) {
        return;
    }
    const auto pump = m_pending->pump;
    const Starter starter = std::exchange(m_starter, nullptr);
    starter(m_conversation.m_cancellable, &Pending::completed, new std::shared_ptr<Pending>(m_pending));
    pump->look();
}

bool SecretServiceConversation::Call::await_ready() const
{
    return m_conversation.hasEnded() || m_pending->result != nullptr;
}

void SecretServiceConversation::Call::await_suspend(std::coroutine_handle<> job)
{
    m_pending->job = job;
    m_conversation.m_pending = m_pending;
    begin();
}

GAsyncResult *SecretServiceConversation::Call::await_resume() const
{
    m_conversation.m_pending.reset();
    return m_conversation.hasEnded() ? nullptr : m_pending->result;
}

SecretServiceConversation::SecretServiceConversation(std::shared_ptr<SecretServiceSession> session)
    : m_session(std::move(session)), m_self(std::make_shared<SecretServiceConversation *>(this))
{
    m_session->add(*this);
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { boundPassed(); });
}

SecretServiceConversation::~SecretServiceConversation()
{
    m_session->remove(*this);
    if (m_library == nullptr) {
        return;
    }
    if (m_subscription != 0) {
        m_library->signalUnsubscribe(m_bus, m_subscription);
    }
    for (gpointer object :
         {static_cast<gpointer>(m_service), static_cast<gpointer>(m_bus), static_cast<gpointer>(m_cancellable)}) {
        if (object != nullptr) {
            m_library->objectUnref(object);
        }
    }
}

SecretServiceConversation::Call SecretServiceConversation::call(Starter starter)
{
    return {*this, std::move(starter)};
}

void SecretServiceConversation::expect(Waiting waiting)
{
    m_waiting = waiting;
    m_waited.start();
    if (waiting == Waiting::forUser) {
        watchStore();
    }
    const SecretServiceBounds &bounds = m_session->bounds();
    m_timer.start(waiting == Waiting::forAnswer ? bounds.answer : std::min(bounds.answer, bounds.prompt));
}

void SecretServiceConversation::boundPassed()
{
    if (m_waiting == Waiting::forAnswer) {
        abandon(KeyStoreStatus::notAvailable);
        return;
    }
    const auto left = m_session->bounds().prompt - std::chrono::milliseconds(m_waited.elapsed());
    if (left <= std::chrono::milliseconds::zero()) {
        abandon(KeyStoreStatus::interactionNotAllowed);
        return;
    }
    // A prompt that waits for the user looks like a store that hangs, but for the other things that it still answers.
    m_timer.start(left);
    endUnlessAlive(m_session, m_self);
}

void SecretServiceConversation::watchStore()
{
    if (m_subscription != 0) {
        return;
    }
    using Self = std::weak_ptr<SecretServiceConversation *>;
    m_subscription =
        m_library->signalSubscribe(m_bus, busName, busName, "NameOwnerChanged", busPath, secretsName,
                                   G_DBUS_SIGNAL_FLAGS_NONE, &SecretServiceConversation::ownerChanged, new Self(m_self),
                                   [](gpointer data) { delete static_cast<Self *>(data); });
}

void SecretServiceConversation::ownerChanged(GDBusConnection *, const gchar *, const gchar *, const gchar *,
                                             const gchar *, GVariant *arguments, gpointer data)
{
    const gchar *newOwner = nullptr;
    g_variant_get(arguments, "(&s&s&s)", nullptr, nullptr, &newOwner);
    const auto self = static_cast<std::weak_ptr<SecretServiceConversation *> *>(data)->lock();
    if (self && *newOwner == '\0') {
        (*self)->abandon(KeyStoreStatus::notAvailable);
    }
}

QCoro::Task<void> SecretServiceConversation::endUnlessAlive(std::shared_ptr<SecretServiceSession> session,
                                                            std::weak_ptr<SecretServiceConversation *> waiting)
{
    SecretServiceConversation other(std::move(session));
    qint32 status = co_await other.open();
    if (status == KeyStoreStatus::success) {
        const Answer answer =
            co_await other.ask(secretsName, secretsPath, "org.freedesktop.DBus.Peer", "Ping", g_variant_new("()"));
        status = answer.status;
    }
    if (const auto self = waiting.lock(); self && status != KeyStoreStatus::success) {
        (*self)->abandon(status);
    }
}

void SecretServiceConversation::abandon(qint32 status)
{
    if (m_end) {
        return;
    }
    m_end = status;
    m_timer.stop();
    const auto pending = std::exchange(m_pending, nullptr);
    const auto job = pending ? std::exchange(pending->job, nullptr) : nullptr;
    if (m_cancellable != nullptr) {
        m_library->cancellableCancel(m_cancellable);
    }
    if (job) {
        job.resume(); // this object may be gone after it
    }
}

qint32 SecretServiceConversation::statusOf(GError *error) const
{
    const qint32 status = SecretServiceStatus::ofError(*m_library, error);
    return m_end.value_or(status);
}

QCoro::Task<qint32> SecretServiceConversation::open()
{
    if (m_session->isClosed()) {
        co_return KeyStoreStatus::userCanceled;
    }
    m_library = SessionBus::isAnnounced() ? SecretLibrary::load() : nullptr;
    if (m_library == nullptr) {
        co_return KeyStoreStatus::notAvailable;
    }
    m_pump = GLibContextPump::hold();
    m_cancellable = m_library->cancellableNew();
    expect(Waiting::forAnswer);
    if (const auto reached = m_session->reached(); reached.service != nullptr) {
        m_bus = static_cast<GDBusConnection *>(m_library->objectRef(reached.bus));
        m_service = static_cast<SecretService *>(m_library->objectRef(reached.service));
        co_return KeyStoreStatus::success;
    }
    GAsyncResult *result = co_await call([this](auto *cancellable, auto callback, auto data) {
        m_library->busGet(G_BUS_TYPE_SESSION, cancellable, callback, data);
    });
    GError *error = nullptr;
    m_bus = result == nullptr ? nullptr : m_library->busGetFinish(result, &error);
    if (m_bus == nullptr) {
        co_return statusOf(error);
    }
    // By default the end of the bus would end the process.
    m_library->setExitOnClose(m_bus, FALSE);
    result = co_await call([this](auto *cancellable, auto callback, auto data) {
        m_library->serviceGet(SECRET_SERVICE_OPEN_SESSION, cancellable, callback, data);
    });
    m_service = result == nullptr ? nullptr : m_library->serviceGetFinish(result, &error);
    if (m_service == nullptr) {
        co_return statusOf(error);
    }
    m_session->setReached(*m_library, {m_bus, m_service});
    co_return KeyStoreStatus::success;
}

QCoro::Task<qint32> SecretServiceConversation::dismissalStatus()
{
    expect(Waiting::forAnswer);
    // GNOME Keyring says "dismissed" also when nobody was there to show the prompt. Whoever shows it stays on the bus
    // for a while after.
    const auto store = co_await owner(secretsName);
    const auto keyring = co_await owner("org.gnome.keyring");
    const auto prompter = co_await owner("org.gnome.keyring.SystemPrompter");
    const bool isKeyring = store && keyring && *store == *keyring;
    co_return isKeyring && !prompter ? KeyStoreStatus::interactionNotAllowed : KeyStoreStatus::userCanceled;
}

QCoro::Task<SecretServiceConversation::Answer> SecretServiceConversation::ask(QByteArray destination, QByteArray path,
                                                                              QByteArray interface, QByteArray method,
                                                                              GVariant *arguments)
{
    const Variant owned(g_variant_ref_sink(arguments));
    GAsyncResult *const result = co_await call([&](auto *cancellable, auto callback, auto data) {
        m_library->busCall(m_bus, destination.constData(), path.constData(), interface.constData(), method.constData(),
                           arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, cancellable, callback, data);
    });
    GError *error = nullptr;
    Answer answer;
    answer.value.reset(result == nullptr ? nullptr : m_library->busCallFinish(m_bus, result, &error));
    if (!answer.value) {
        answer.status = statusOf(error);
    }
    co_return answer;
}

QCoro::Task<std::optional<QByteArray>> SecretServiceConversation::owner(QByteArray name)
{
    const Answer answer =
        co_await ask(busName, busPath, busName, "GetNameOwner", g_variant_new("(s)", name.constData()));
    if (!answer.value) {
        co_return std::nullopt;
    }
    const gchar *unique = nullptr;
    g_variant_get(answer.value.get(), "(&s)", &unique);
    co_return QByteArray(unique);
}

} // namespace orvesa
