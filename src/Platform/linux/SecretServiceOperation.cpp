#include "Platform/linux/SecretServiceOperation.h"

#include "Platform/linux/SessionBus.h"

#include <QDebug>

#include <utility>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

// Other attributes and the schema's name take no part in a search, so that items made by other programs are found as
// well.
const SecretSchema schema = {"org.freedesktop.Secret.Generic",
                             SECRET_SCHEMA_DONT_MATCH_NAME,
                             {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                              {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                              {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                             0,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr};

constexpr auto secretsName = "org.freedesktop.secrets";
constexpr auto secretsPath = "/org/freedesktop/secrets";

struct AttributesDeleter {
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
};
using Attributes = std::unique_ptr<GHashTable, AttributesDeleter>;

Attributes attributesOf(const KeyStoreQuery &query)
{
    Attributes attributes(g_hash_table_new_full(g_str_hash, g_str_equal, nullptr, g_free));
    const auto insert = [&attributes](const char *name, const QString &value) {
        g_hash_table_insert(attributes.get(), const_cast<char *>(name), g_strdup(value.toUtf8().constData()));
    };
    insert("service", query.service);
    insert("account", query.account);
    return attributes;
}

std::vector<QByteArray> taken(gchar **paths)
{
    std::vector<QByteArray> result;
    for (gchar **path = paths; path != nullptr && *path != nullptr; ++path) {
        result.emplace_back(*path);
    }
    g_strfreev(paths);
    return result;
}

std::vector<const gchar *> pointersTo(const std::vector<QByteArray> &paths)
{
    std::vector<const gchar *> pointers;
    pointers.reserve(paths.size() + 1);
    for (const QByteArray &path : paths) {
        pointers.push_back(path.constData());
    }
    pointers.push_back(nullptr);
    return pointers;
}

bool meansNoStore(const SecretLibrary &library, const GError &error)
{
    if (error.domain == library.dbusErrorQuark()) {
        switch (error.code) {
        case G_DBUS_ERROR_SERVICE_UNKNOWN:
        case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
        case G_DBUS_ERROR_NO_REPLY:
        case G_DBUS_ERROR_NO_SERVER:
        case G_DBUS_ERROR_TIMEOUT:
        case G_DBUS_ERROR_TIMED_OUT:
        case G_DBUS_ERROR_DISCONNECTED:
        case G_DBUS_ERROR_SPAWN_EXEC_FAILED:
        case G_DBUS_ERROR_SPAWN_FORK_FAILED:
        case G_DBUS_ERROR_SPAWN_CHILD_EXITED:
        case G_DBUS_ERROR_SPAWN_CHILD_SIGNALED:
        case G_DBUS_ERROR_SPAWN_FAILED:
        case G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND:
            return true;
        default:
            return false;
        }
    }
    // Whatever the transport below says means that nobody is there.
    return error.domain == library.ioErrorQuark() && error.code != G_IO_ERROR_DBUS_ERROR;
}

} // namespace

/// The state of one call; outlives the operation when that gives up before the library calls back.
struct SecretServiceOperation::Pending {
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

/// Awaits one call; gives its result, or null when the operation was given up.
class SecretServiceOperation::Call final {
public:
    Call(SecretServiceOperation &operation, Starter starter)
        : m_operation(operation), m_starter(std::move(starter)), m_pending(std::make_shared<Pending>())
    {
        m_pending->library = operation.m_library;
        m_pending->pump = operation.m_pump;
    }

    [[nodiscard]] bool await_ready() const { return m_operation.m_end.has_value(); }
    void await_suspend(std::coroutine_handle<> job)
    {
        m_pending->job = job;
        m_operation.m_pending = m_pending;
        const auto pump = m_pending->pump;
        m_starter(m_operation.m_cancellable, &Pending::completed, new std::shared_ptr<Pending>(m_pending));
        pump->look();
    }
    [[nodiscard]] GAsyncResult *await_resume() const
    {
        m_operation.m_pending.reset();
        return m_operation.m_end ? nullptr : m_pending->result;
    }

private:
    SecretServiceOperation &m_operation;
    Starter m_starter;
    std::shared_ptr<Pending> m_pending;
};

SecretServiceOperation::SecretServiceOperation(std::shared_ptr<SecretServiceSession> session)
    : m_session(std::move(session))
{
    m_session->add(*this);
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
        abandon(m_waiting == Waiting::forAnswer ? KeyStoreStatus::notAvailable : KeyStoreStatus::interactionNotAllowed);
    });
}

SecretServiceOperation::~SecretServiceOperation()
{
    m_session->remove(*this);
    if (m_library == nullptr) {
        return;
    }
    for (gpointer object :
         {static_cast<gpointer>(m_service), static_cast<gpointer>(m_bus), static_cast<gpointer>(m_cancellable)}) {
        if (object != nullptr) {
            m_library->objectUnref(object);
        }
    }
}

SecretServiceOperation::Call SecretServiceOperation::call(Starter starter)
{
    return {*this, std::move(starter)};
}

void SecretServiceOperation::setBound(Waiting waiting)
{
    m_waiting = waiting;
    m_timer.start(waiting == Waiting::forAnswer ? m_session->bounds().answer : m_session->bounds().prompt);
}

void SecretServiceOperation::abandon(qint32 status)
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

qint32 SecretServiceOperation::statusOf(GError *error) const
{
    const std::unique_ptr<GError, decltype(&g_error_free)> owned(error, &g_error_free);
    if (m_end) {
        return *m_end;
    }
    if (error == nullptr) {
        return KeyStoreStatus::authorizationFailed;
    }
    if (error->domain == m_library->secretErrorQuark()) {
        switch (error->code) {
        case SECRET_ERROR_IS_LOCKED:
            return KeyStoreStatus::interactionNotAllowed;
        case SECRET_ERROR_NO_SUCH_OBJECT:
            return KeyStoreStatus::itemNotFound;
        default:
            return KeyStoreStatus::authorizationFailed;
        }
    }
    return meansNoStore(*m_library, *error) ? KeyStoreStatus::notAvailable : KeyStoreStatus::authorizationFailed;
}

QCoro::Task<qint32> SecretServiceOperation::open()
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
    setBound(Waiting::forAnswer);
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
    co_return m_service == nullptr ? statusOf(error) : KeyStoreStatus::success;
}

QCoro::Task<SecretServiceOperation::Found> SecretServiceOperation::search(KeyStoreQuery query)
{
    const Attributes attributes = attributesOf(query);
    GAsyncResult *const result = co_await call([this, &attributes](auto *cancellable, auto callback, auto data) {
        m_library->search(m_service, &schema, attributes.get(), cancellable, callback, data);
    });
    gchar **unlocked = nullptr;
    gchar **locked = nullptr;
    GError *error = nullptr;
    if (result == nullptr || m_library->searchFinish(m_service, result, &unlocked, &locked, &error) == FALSE) {
        co_return Found{.status = statusOf(error), .unlocked = {}, .locked = {}};
    }
    Found found{.status = KeyStoreStatus::success, .unlocked = taken(unlocked), .locked = taken(locked)};
    if (found.unlocked.empty() && found.locked.empty()) {
        found.status = KeyStoreStatus::itemNotFound;
    }
    co_return found;
}

QCoro::Task<qint32> SecretServiceOperation::unlock(std::vector<Path> paths)
{
    setBound(Waiting::forPrompt);
    auto pointers = pointersTo(paths);
    GAsyncResult *const result = co_await call([this, &pointers](auto *cancellable, auto callback, auto data) {
        m_library->unlock(m_service, pointers.data(), cancellable, callback, data);
    });
    gchar **unlocked = nullptr;
    GError *error = nullptr;
    const gint count = result == nullptr ? -1 : m_library->unlockFinish(m_service, result, &unlocked, &error);
    g_strfreev(unlocked);
    if (m_end || error != nullptr || count < 0) {
        co_return statusOf(error);
    }
    setBound(Waiting::forAnswer);
    if (count > 0) {
        co_return KeyStoreStatus::success;
    }
    co_return co_await dismissalStatus();
}

QCoro::Task<qint32> SecretServiceOperation::dismissalStatus()
{
    // GNOME Keyring says "dismissed" also when nobody was there to show the prompt. Whoever shows it stays on the bus
    // for a while after.
    const auto store = co_await owner(secretsName);
    const auto keyring = co_await owner("org.gnome.keyring");
    const auto prompter = co_await owner("org.gnome.keyring.SystemPrompter");
    const bool isKeyring = store && keyring && *store == *keyring;
    co_return isKeyring && !prompter ? KeyStoreStatus::interactionNotAllowed : KeyStoreStatus::userCanceled;
}

QCoro::Task<GVariant *> SecretServiceOperation::ask(QByteArray destination, QByteArray path, QByteArray interface,
                                                    QByteArray method, GVariant *arguments)
{
    g_variant_ref_sink(arguments);
    GAsyncResult *const result = co_await call([&](auto *cancellable, auto callback, auto data) {
        m_library->busCall(m_bus, destination.constData(), path.constData(), interface.constData(), method.constData(),
                           arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, cancellable, callback, data);
    });
    GError *error = nullptr;
    GVariant *const answer = result == nullptr ? nullptr : m_library->busCallFinish(m_bus, result, &error);
    g_clear_error(&error);
    g_variant_unref(arguments);
    co_return answer;
}

QCoro::Task<std::optional<QByteArray>> SecretServiceOperation::owner(QByteArray busName)
{
    GVariant *const answer = co_await ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                          "GetNameOwner", g_variant_new("(s)", busName.constData()));
    if (answer == nullptr) {
        co_return std::nullopt;
    }
    const gchar *unique = nullptr;
    g_variant_get(answer, "(&s)", &unique);
    QByteArray result(unique);
    g_variant_unref(answer);
    co_return result;
}

QCoro::Task<KeyStoreCopyResult> SecretServiceOperation::secret(Path path)
{
    GAsyncResult *const result = co_await call([this, &path](auto *cancellable, auto callback, auto data) {
        m_library->getSecret(m_service, path.constData(), cancellable, callback, data);
    });
    GError *error = nullptr;
    SecretValue *const value = result == nullptr ? nullptr : m_library->getSecretFinish(m_service, result, &error);
    if (value == nullptr) {
        const bool isGone = !m_end && error == nullptr;
        co_return KeyStoreCopyResult{.status = isGone ? KeyStoreStatus::itemNotFound : statusOf(error), .data = {}};
    }
    gsize length = 0;
    const gchar *const bytes = m_library->valueGet(value, &length);
    KeyStoreCopyResult copy{.status = KeyStoreStatus::success,
                            .data = QByteArray(bytes, static_cast<qsizetype>(length))};
    m_library->valueUnref(value); // the library wipes its own memory
    co_return copy;
}

QCoro::Task<qint32> SecretServiceOperation::setSecret(Path path, QByteArray data)
{
    GAsyncResult *result = co_await call([this, &path](auto *cancellable, auto callback, auto context) {
        m_library->itemNew(m_service, path.constData(), SECRET_ITEM_NONE, cancellable, callback, context);
    });
    GError *error = nullptr;
    SecretItem *const item = result == nullptr ? nullptr : m_library->itemNewFinish(result, &error);
    if (item == nullptr) {
        co_return statusOf(error);
    }
    SecretValue *const value = m_library->valueNew(data.constData(), data.size(), "text/plain");
    result = co_await call([this, item, value](auto *cancellable, auto callback, auto context) {
        m_library->setSecret(item, value, cancellable, callback, context);
    });
    const bool isDone = result != nullptr && m_library->setSecretFinish(item, result, &error) != FALSE;
    m_library->valueUnref(value);
    m_library->objectUnref(item);
    co_return isDone ? KeyStoreStatus::success : statusOf(error);
}

QCoro::Task<qint32> SecretServiceOperation::remove(Path path)
{
    GAsyncResult *const result = co_await call([this, &path](auto *cancellable, auto callback, auto data) {
        m_library->deleteItem(m_service, path.constData(), cancellable, callback, data);
    });
    GError *error = nullptr;
    const bool isDone = result != nullptr && m_library->deleteItemFinish(m_service, result, &error) != FALSE;
    co_return isDone ? KeyStoreStatus::success : statusOf(error);
}

QCoro::Task<qint32> SecretServiceOperation::prepareDefaultCollection()
{
    GVariant *const answer = co_await ask(secretsName, secretsPath, "org.freedesktop.Secret.Service", "ReadAlias",
                                          g_variant_new("(s)", "default"));
    if (answer == nullptr) {
        co_return statusOf(nullptr);
    }
    const gchar *text = nullptr;
    g_variant_get(answer, "(&o)", &text);
    const QByteArray collection(text);
    g_variant_unref(answer);
    if (collection.endsWith("/collection/session")) {
        qWarning("OrvesaTranslate: the key store has no collection that lasts beyond this session");
        co_return KeyStoreStatus::notAvailable;
    }
    if (collection == "/") {
        setBound(Waiting::forPrompt); // making the collection asks the user for its password
        co_return KeyStoreStatus::success;
    }
    GVariant *const property = co_await ask(secretsName, collection, "org.freedesktop.DBus.Properties", "Get",
                                            g_variant_new("(ss)", "org.freedesktop.Secret.Collection", "Locked"));
    if (property == nullptr) {
        co_return statusOf(nullptr);
    }
    GVariant *locked = nullptr;
    g_variant_get(property, "(v)", &locked);
    const bool isLocked = g_variant_get_boolean(locked) != FALSE;
    g_variant_unref(locked);
    g_variant_unref(property);
    if (!isLocked) {
        co_return KeyStoreStatus::success;
    }
    const std::vector<Path> wanted(1, collection);
    co_return co_await unlock(wanted);
}

QCoro::Task<qint32> SecretServiceOperation::create(KeyStoreQuery query, QByteArray data)
{
    if (const qint32 status = co_await prepareDefaultCollection(); status != KeyStoreStatus::success) {
        co_return status;
    }
    const Attributes attributes = attributesOf(query);
    const QByteArray label = (m_session->productName() + ": "_L1 + query.account).toUtf8();
    SecretValue *const value = m_library->valueNew(data.constData(), data.size(), "text/plain");
    GAsyncResult *const result = co_await call([&](auto *cancellable, auto callback, auto context) {
        m_library->store(m_service, &schema, attributes.get(), SECRET_COLLECTION_DEFAULT, label.constData(), value,
                         cancellable, callback, context);
    });
    GError *error = nullptr;
    const bool isDone = result != nullptr && m_library->storeFinish(m_service, result, &error) != FALSE;
    m_library->valueUnref(value);
    co_return isDone ? KeyStoreStatus::success : statusOf(error);
}

} // namespace orvesa
