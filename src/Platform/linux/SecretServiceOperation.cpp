#include "Platform/linux/SecretServiceOperation.h"

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
constexpr auto noCollection = "/";

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

} // namespace

SecretServiceOperation::SecretServiceOperation(std::shared_ptr<SecretServiceSession> session)
    : m_session(session), m_conversation(std::move(session))
{
}

QCoro::Task<qint32> SecretServiceOperation::open()
{
    return m_conversation.open();
}

SecretServiceOperation::Call SecretServiceOperation::searchCall(const KeyStoreQuery &query)
{
    const std::shared_ptr<GHashTable> attributes(attributesOf(query));
    return m_conversation.call([this, attributes](auto *cancellable, auto callback, auto data) {
        m_conversation.library().search(m_conversation.service(), &schema, attributes.get(), cancellable, callback,
                                        data);
    });
}

SecretServiceOperation::Call SecretServiceOperation::secretCall(const Path &path)
{
    return m_conversation.call([this, path](auto *cancellable, auto callback, auto data) {
        m_conversation.library().getSecret(m_conversation.service(), path.constData(), cancellable, callback, data);
    });
}

SecretServiceOperation::Found SecretServiceOperation::found(GAsyncResult *result)
{
    gchar **unlocked = nullptr;
    gchar **locked = nullptr;
    GError *error = nullptr;
    if (result == nullptr ||
        m_conversation.library().searchFinish(m_conversation.service(), result, &unlocked, &locked, &error) == FALSE) {
        return {.status = m_conversation.statusOf(error), .unlocked = {}, .locked = {}};
    }
    m_conversation.expect(Waiting::forAnswer);
    Found found{.status = KeyStoreStatus::success, .unlocked = taken(unlocked), .locked = taken(locked)};
    if (found.unlocked.empty() && found.locked.empty()) {
        found.status = KeyStoreStatus::itemNotFound;
    }
    return found;
}

QCoro::Task<SecretServiceOperation::Found> SecretServiceOperation::search(KeyStoreQuery query)
{
    // Some stores, KeePassXC among them, unlock before they search and let the search wait for that.
    m_conversation.expect(Waiting::forUser);
    GAsyncResult *const result = co_await searchCall(query);
    co_return found(result);
}

QCoro::Task<KeyStoreCopyResult> SecretServiceOperation::copy(KeyStoreQuery query)
{
    m_conversation.expect(Waiting::forUser);
    const Path guess = m_session->lastPlace(query);
    Call searching = searchCall(query);
    searching.begin();
    // Behind the search, so that what it gives is no older. Of an item that is locked a store gives nothing, and asks
    // nobody.
    Call reading = secretCall(guess);
    if (!guess.isEmpty()) {
        reading.begin();
    }
    GAsyncResult *const searched = co_await searching;
    const Found item = found(searched);
    if (item.status != KeyStoreStatus::success) {
        co_return KeyStoreCopyResult{.status = item.status, .data = {}};
    }
    const Path place = item.unlocked.empty() ? item.locked.front() : item.unlocked.front();
    m_session->setLastPlace(query, place);
    if (!item.unlocked.empty() && place == guess) {
        GAsyncResult *const read = co_await reading;
        KeyStoreCopyResult result = copied(read);
        if (result.status == KeyStoreStatus::success || m_conversation.hasEnded()) {
            co_return result;
        }
    }
    if (item.unlocked.empty()) {
        const std::vector<Path> wanted(1, place);
        if (const qint32 status = co_await unlock(wanted); status != KeyStoreStatus::success) {
            co_return KeyStoreCopyResult{.status = status, .data = {}};
        }
    }
    co_return co_await secret(place);
}

QCoro::Task<qint32> SecretServiceOperation::unlock(std::vector<Path> paths)
{
    m_conversation.expect(Waiting::forUser);
    auto pointers = pointersTo(paths);
    GAsyncResult *const result =
        co_await m_conversation.call([this, &pointers](auto *cancellable, auto callback, auto data) {
            m_conversation.library().unlock(m_conversation.service(), pointers.data(), cancellable, callback, data);
        });
    gchar **unlocked = nullptr;
    GError *error = nullptr;
    const gint count = result == nullptr
                           ? -1
                           : m_conversation.library().unlockFinish(m_conversation.service(), result, &unlocked, &error);
    g_strfreev(unlocked);
    if (m_conversation.hasEnded() || error != nullptr || count < 0) {
        co_return m_conversation.statusOf(error);
    }
    m_conversation.expect(Waiting::forAnswer);
    if (count > 0) {
        co_return KeyStoreStatus::success;
    }
    co_return co_await m_conversation.dismissalStatus();
}

KeyStoreCopyResult SecretServiceOperation::copied(GAsyncResult *result)
{
    GError *error = nullptr;
    SecretValue *const value = result == nullptr
                                   ? nullptr
                                   : m_conversation.library().getSecretFinish(m_conversation.service(), result, &error);
    if (value == nullptr) {
        const bool isGone = !m_conversation.hasEnded() && error == nullptr;
        return {.status = isGone ? KeyStoreStatus::itemNotFound : m_conversation.statusOf(error), .data = {}};
    }
    gsize length = 0;
    const gchar *const bytes = m_conversation.library().valueGet(value, &length);
    KeyStoreCopyResult copy{.status = KeyStoreStatus::success,
                            .data = QByteArray(bytes, static_cast<qsizetype>(length))};
    m_conversation.library().valueUnref(value); // the library wipes its own memory
    return copy;
}

QCoro::Task<KeyStoreCopyResult> SecretServiceOperation::secret(Path path)
{
    GAsyncResult *const result = co_await secretCall(path);
    co_return copied(result);
}

QCoro::Task<qint32> SecretServiceOperation::setSecret(Path path, QByteArray data)
{
    GAsyncResult *result = co_await m_conversation.call([this, &path](auto *cancellable, auto callback, auto context) {
        m_conversation.library().itemNew(m_conversation.service(), path.constData(), SECRET_ITEM_NONE, cancellable,
                                         callback, context);
    });
    GError *error = nullptr;
    SecretItem *const item = result == nullptr ? nullptr : m_conversation.library().itemNewFinish(result, &error);
    if (item == nullptr) {
        co_return m_conversation.statusOf(error);
    }
    SecretValue *const value = m_conversation.library().valueNew(data.constData(), data.size(), "text/plain");
    result = co_await m_conversation.call([this, item, value](auto *cancellable, auto callback, auto context) {
        m_conversation.library().setSecret(item, value, cancellable, callback, context);
    });
    const bool isDone = result != nullptr && m_conversation.library().setSecretFinish(item, result, &error) != FALSE;
    m_conversation.library().valueUnref(value);
    m_conversation.library().objectUnref(item);
    co_return isDone ? KeyStoreStatus::success : m_conversation.statusOf(error);
}

QCoro::Task<qint32> SecretServiceOperation::remove(Path path)
{
    m_conversation.expect(Waiting::forUser); // a store may ask whether that is meant
    GAsyncResult *const result = co_await m_conversation.call([this, &path](auto *cancellable, auto callback,
                                                                            auto data) {
        m_conversation.library().deleteItem(m_conversation.service(), path.constData(), cancellable, callback, data);
    });
    GError *error = nullptr;
    const bool isDone = result != nullptr &&
                        m_conversation.library().deleteItemFinish(m_conversation.service(), result, &error) != FALSE;
    if (!isDone && result != nullptr && error == nullptr) {
        co_return co_await m_conversation.dismissalStatus();
    }
    co_return isDone ? KeyStoreStatus::success : m_conversation.statusOf(error);
}

QCoro::Task<SecretServiceOperation::Collection> SecretServiceOperation::defaultCollection()
{
    const auto alias = co_await m_conversation.ask(secretsName, secretsPath, "org.freedesktop.Secret.Service",
                                                   "ReadAlias", g_variant_new("(s)", "default"));
    Collection collection;
    collection.status = alias.status;
    if (alias.value) {
        const gchar *text = nullptr;
        g_variant_get(alias.value.get(), "(&o)", &text);
        collection.path = text;
    }
    co_return collection;
}

QCoro::Task<qint32> SecretServiceOperation::prepareDefaultCollection()
{
    const Collection alias = co_await defaultCollection();
    if (alias.status != KeyStoreStatus::success || alias.path == noCollection) {
        co_return alias.status; // one that is missing is made together with the item
    }
    const Path collection = alias.path;
    if (collection.endsWith("/collection/session")) {
        qWarning("OrvesaTranslate: the key store's default collection ends with the session, and so will the key");
    }
    const auto property =
        co_await m_conversation.ask(secretsName, collection, "org.freedesktop.DBus.Properties", "Get",
                                    g_variant_new("(ss)", "org.freedesktop.Secret.Collection", "Locked"));
    if (!property.value) {
        co_return property.status;
    }
    GVariant *content = nullptr;
    g_variant_get(property.value.get(), "(v)", &content);
    const SecretServiceConversation::Variant locked(content);
    if (g_variant_get_boolean(locked.get()) == FALSE) {
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
    m_conversation.expect(Waiting::forUser); // for the password of a new collection, for example
    const Attributes attributes = attributesOf(query);
    const QByteArray label = (m_conversation.productName() + ": "_L1 + query.account).toUtf8();
    const SecretLibrary &library = m_conversation.library();
    SecretValue *const value = library.valueNew(data.constData(), data.size(), "text/plain");
    GAsyncResult *const result = co_await m_conversation.call([&](auto *cancellable, auto callback, auto context) {
        library.store(m_conversation.service(), &schema, attributes.get(), SECRET_COLLECTION_DEFAULT, label.constData(),
                      value, cancellable, callback, context);
    });
    GError *error = nullptr;
    const bool isDone = result != nullptr && library.storeFinish(m_conversation.service(), result, &error) != FALSE;
    library.valueUnref(value);
    if (isDone) {
        co_return KeyStoreStatus::success;
    }
    const qint32 status = m_conversation.statusOf(error);
    if (m_conversation.hasEnded()) {
        co_return status;
    }
    // When the prompt for a new collection leads to nothing, the library goes on without one and fails there.
    const Collection afterwards = co_await defaultCollection();
    const bool isMissing = afterwards.status == KeyStoreStatus::success && afterwards.path == noCollection;
    if (isMissing) {
        co_return co_await m_conversation.dismissalStatus();
    }
    co_return status;
}

} // namespace orvesa
