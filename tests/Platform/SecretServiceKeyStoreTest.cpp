#include "Platform/linux/SecretServiceKeyStore.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/KeyStoreContract.h"
#include "desktop/BusClient.h"

#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QMap>

#include <optional>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using desktop::KeyStore;
using desktop::waitUntil;
using tests::AdoptedDesktop;

namespace {

const KeyStoreQuery query{u"com.example.test"_s, u"openai_api_key"_s};

desktop::DesktopOptions withStore(KeyStore store)
{
    desktop::DesktopOptions options;
    options.windowManager = desktop::WindowManager::none;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = store;
    return options;
}

/// The desktop's way of showing the store's prompts.
void startPrompter(desktop::Desktop &desktop)
{
    const QString name = u"org.gnome.keyring.SystemPrompter"_s;
    bool isThere = false;
    QDBusServiceWatcher watcher(name, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &watcher, [&isThere] { isThere = true; });
    desktop.launch(u"/usr/libexec/gcr-prompter"_s);
    waitUntil([&isThere] { return isThere; }, u"the prompter"_s);
}

template <typename Result>
QCoro::Task<void> keep(QCoro::Task<Result> task, std::shared_ptr<std::optional<Result>> result)
{
    *result = co_await task;
}

/// The result of a job, awaited through the event loop.
template <typename Result>
Result ended(QCoro::Task<Result> task, std::chrono::milliseconds deadline = desktop::usualDeadline)
{
    const auto result = std::make_shared<std::optional<Result>>();
    keep(std::move(task), result);
    waitUntil([&result] { return result->has_value(); }, u"the key store's answer"_s, deadline);
    return **result;
}

} // namespace

TEST(SecretServiceKeyStoreTest, KeepsTheContract)
{
    AdoptedDesktop desktop(withStore(KeyStore::unlocked));
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    tests::expectKeyStoreContract(store, tests::Secrets::bytes);
}

TEST(SecretServiceKeyStoreTest, KeepsReplacesAndDeletesASecret)
{
    AdoptedDesktop desktop(withStore(KeyStore::unlocked));
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    store.warmUp();
    EXPECT_EQ(ended(store.copyMatching(query)).status, KeyStoreStatus::itemNotFound);
    EXPECT_EQ(ended(store.update(query, "none yet")), KeyStoreStatus::itemNotFound);
    EXPECT_EQ(ended(store.remove(query)), KeyStoreStatus::itemNotFound);

    EXPECT_EQ(ended(store.add(query, "sk-one")), KeyStoreStatus::success);
    EXPECT_EQ(desktop->keyStore().lookup(query.service, query.account), "sk-one");
    EXPECT_EQ(ended(store.copyMatching(query)).data, "sk-one");
    EXPECT_EQ(ended(store.copyMatching({query.service, u"xai_api_key"_s})).status, KeyStoreStatus::itemNotFound);
    EXPECT_EQ(ended(store.copyMatching({u"com.example.other"_s, query.account})).status, KeyStoreStatus::itemNotFound);

    EXPECT_EQ(ended(store.update(query, "sk-two \xff")), KeyStoreStatus::success);
    EXPECT_EQ(desktop->keyStore().count(query.service), 1) << "replaced in place";
    const KeyStoreCopyResult copy = ended(store.copyMatching(query));
    EXPECT_EQ(copy.status, KeyStoreStatus::success);
    EXPECT_EQ(copy.data, "sk-two \xff") << "bytes, not text";

    EXPECT_EQ(ended(store.remove(query)), KeyStoreStatus::success);
    EXPECT_EQ(desktop->keyStore().count(query.service), 0);
}

TEST(SecretServiceKeyStoreTest, SeesWhatAnotherProgramDidSinceTheLastRead)
{
    AdoptedDesktop desktop(withStore(KeyStore::unlocked));
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    desktop->keyStore().store(query.service, query.account, "sk-one");
    for (int time = 0; time < 3; ++time) {
        ASSERT_EQ(ended(store.copyMatching(query)).data, "sk-one");
    }
    desktop->keyStore().store(query.service, query.account, "sk-two");
    EXPECT_EQ(ended(store.copyMatching(query)).data, "sk-two");

    ASSERT_EQ(ended(store.remove(query)), KeyStoreStatus::success);
    EXPECT_EQ(ended(store.copyMatching(query)).status, KeyStoreStatus::itemNotFound);
    desktop->keyStore().store(query.service, query.account, "sk-three");
    EXPECT_EQ(ended(store.copyMatching(query)).data, "sk-three");
}

TEST(SecretServiceKeyStoreTest, ReadsNoItemThatBecameAnotherOne)
{
    AdoptedDesktop desktop(withStore(KeyStore::unlocked));
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    desktop->keyStore().store(query.service, query.account, "sk-one");
    ASSERT_EQ(ended(store.copyMatching(query)).data, "sk-one");

    // Still in its place, and with its secret, but under another name.
    using Attributes = QMap<QString, QString>;
    qDBusRegisterMetaType<Attributes>();
    desktop::BusClient bus(desktop->sessionBusAddress());
    const QString secrets = u"org.freedesktop.secrets"_s;
    const Attributes wanted{{u"service"_s, query.service}, {u"account"_s, query.account}};
    const Attributes changed{{u"service"_s, query.service}, {u"account"_s, u"xai_api_key"_s}};
    const auto found = bus.call(secrets, u"/org/freedesktop/secrets"_s, u"org.freedesktop.Secret.Service"_s,
                                u"SearchItems"_s, {QVariant::fromValue(wanted)});
    const auto places = qdbus_cast<QList<QDBusObjectPath>>(found.arguments().value(0));
    ASSERT_EQ(places.size(), 1);
    bus.call(secrets, places.front().path(), u"org.freedesktop.DBus.Properties"_s, u"Set"_s,
             {u"org.freedesktop.Secret.Item"_s, u"Attributes"_s,
              QVariant::fromValue(QDBusVariant(QVariant::fromValue(changed)))});
    EXPECT_EQ(ended(store.copyMatching(query)).status, KeyStoreStatus::itemNotFound);
    EXPECT_EQ(ended(store.copyMatching({query.service, u"xai_api_key"_s})).data, "sk-one");
}

TEST(SecretServiceKeyStoreTest, FindsAnEmptySecretAndOneOfAnotherProgram)
{
    AdoptedDesktop desktop(withStore(KeyStore::unlocked));
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    EXPECT_EQ(ended(store.add(query, "")), KeyStoreStatus::success);
    const KeyStoreCopyResult empty = ended(store.copyMatching(query));
    EXPECT_EQ(empty.status, KeyStoreStatus::success);
    EXPECT_TRUE(empty.data.isEmpty());
    const auto stored = desktop->runToEnd(
        u"secret-tool"_s,
        {u"store"_s, u"--label=made elsewhere"_s, u"service"_s, u"s"_s, u"account"_s, u"a"_s, u"more"_s, u"m"_s}, {},
        "from elsewhere");
    ASSERT_EQ(stored.exitCode, 0);
    EXPECT_EQ(ended(store.copyMatching({u"s"_s, u"a"_s})).data, "from elsewhere");
}

TEST(SecretServiceKeyStoreTest, LabelsAnItemForItsReader)
{
    AdoptedDesktop desktop(withStore(KeyStore::unlocked));
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    ASSERT_EQ(ended(store.add(query, "sk")), KeyStoreStatus::success);
    const auto found = desktop->runToEnd(u"secret-tool"_s, {u"search"_s, u"service"_s, query.service});
    EXPECT_TRUE((found.standardOutput + found.standardError).contains("label = Orvesa Translate: openai_api_key"))
        << found.standardOutput.constData();
}

TEST(SecretServiceKeyStoreTest, SaysThatNobodyIsThereToUnlock)
{
    AdoptedDesktop desktop(withStore(KeyStore::locked)); // and nothing that could show its prompt
    SecretServiceKeyStore store(u"Orvesa Translate"_s, {.answer = 5s, .prompt = 8s});
    EXPECT_EQ(ended(store.add(query, "sk")), KeyStoreStatus::interactionNotAllowed);
}

TEST(SecretServiceKeyStoreTest, SaysWhenThePromptIsNotAnswered)
{
    AdoptedDesktop desktop(withStore(KeyStore::locked));
    startPrompter(*desktop);
    SecretServiceKeyStore store(u"Orvesa Translate"_s, {.answer = 5s, .prompt = 1500ms});
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(ended(store.add(query, "sk")), KeyStoreStatus::interactionNotAllowed);
    EXPECT_GE(timer.elapsed(), 1400);
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST(SecretServiceKeyStoreTest, SaysWhenThePromptIsDismissed)
{
    AdoptedDesktop desktop(withStore(KeyStore::locked));
    startPrompter(*desktop);
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    const auto result = std::make_shared<std::optional<qint32>>();
    keep(store.add(query, "sk"), result);
    const xcb_window_t prompt = desktop->windows().awaitWindow({.className = u"gcr-prompter"_s});
    // The prompter holds the keyboard; it can do so only once its window is really there.
    waitUntil(
        [&] {
            desktop->keyboard().press(u"Escape"_s);
            return result->has_value() || !desktop->windows().isMapped(prompt);
        },
        u"the prompt to go"_s);
    waitUntil([&] { return result->has_value(); }, u"the key store's answer"_s);
    EXPECT_EQ(**result, KeyStoreStatus::userCanceled);
}

TEST(SecretServiceKeyStoreTest, SaysWhenNoStoreRuns)
{
    AdoptedDesktop desktop(withStore(KeyStore::absent));
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(ended(store.copyMatching(query)).status, KeyStoreStatus::notAvailable);
    EXPECT_EQ(ended(store.add(query, "sk")), KeyStoreStatus::notAvailable);
    EXPECT_LT(timer.elapsed(), 2000);
}

TEST(SecretServiceKeyStoreTest, SaysWhenTheStoreWentAway)
{
    AdoptedDesktop desktop(withStore(KeyStore::unlocked));
    SecretServiceKeyStore store(u"Orvesa Translate"_s, {.answer = 3s, .prompt = 3s});
    ASSERT_EQ(ended(store.add(query, "sk")), KeyStoreStatus::success);
    desktop->stopKeyStore();
    EXPECT_EQ(ended(store.copyMatching(query)).status, KeyStoreStatus::notAvailable);
}

TEST(SecretServiceKeyStoreTest, NeedsNoSessionBusToSaySo)
{
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    store.warmUp();
    EXPECT_EQ(ended(store.copyMatching(query)).status, KeyStoreStatus::notAvailable);
    EXPECT_EQ(ended(store.remove(query)), KeyStoreStatus::notAvailable);
}

TEST(SecretServiceKeyStoreTest, NeedsNoLiveSessionBusToSaySo)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    EXPECT_EQ(ended(store.copyMatching(query)).status, KeyStoreStatus::notAvailable);
}

TEST(SecretServiceKeyStoreTest, EndsWhatRunsWhenItGoes)
{
    AdoptedDesktop desktop(withStore(KeyStore::locked));
    startPrompter(*desktop);
    auto store = std::make_unique<SecretServiceKeyStore>(u"Orvesa Translate"_s);
    const auto result = std::make_shared<std::optional<qint32>>();
    keep(store->add(query, "sk"), result);
    (void)desktop->windows().awaitWindow({.className = u"gcr-prompter"_s});
    EXPECT_FALSE(result->has_value());
    store.reset();
    EXPECT_EQ(*result, KeyStoreStatus::userCanceled);
    desktop::processEventsFor(100ms); // what the library still has to say comes to nobody
}

} // namespace orvesa
