// A secret store that is locked, hangs, dies, comes back, or has nowhere to keep anything; and what the program does
// meanwhile, which is to go on.

#include "Platform/AdoptedDesktop.h"
#include "Platform/KeyStoreContract.h"
#include "Platform/linux/SecretServiceKeyStore.h"
#include "desktop/BusClient.h"
#include "fakes/Awaited.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QElapsedTimer>
#include <QTimer>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using desktop::BusClient;
using desktop::waitUntil;
using tests::AdoptedDesktop;

namespace {

const KeyStoreQuery query{u"com.example.test"_s, u"openai_api_key"_s};
const QString secretsName = u"org.freedesktop.secrets"_s;
const QString password = u"pw1"_s;

/// Watches that the event loop runs on, as windows need it to.
class Ticking final {
public:
    Ticking()
    {
        m_sinceTick.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            ++m_ticks;
            m_longest = std::max(m_longest, m_sinceTick.restart());
        });
        m_timer.start(5ms);
    }

    [[nodiscard]] int ticks() const { return m_ticks; }
    /// Between two ticks, in milliseconds.
    [[nodiscard]] qint64 longestGap() const { return std::max(m_longest, m_sinceTick.elapsed()); }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    qint64 m_longest = 0;
    int m_ticks = 0;
};

/// A desktop whose keyring the test starts, ends and starts again.
class SecretServiceTrouble : public ::testing::Test {
protected:
    enum class Start { locked, unlocked };

    SecretServiceTrouble() : m_desktop(options()), m_bus(m_desktop->sessionBusAddress()) {}

    static desktop::DesktopOptions options()
    {
        desktop::DesktopOptions options;
        options.accessibility = desktop::Accessibility::none;
        options.keyStore = desktop::KeyStore::absent;
        return options;
    }

    desktop::Process &startKeyring(Start start)
    {
        QStringList arguments{u"--foreground"_s, u"--components=secrets"_s};
        if (start == Start::unlocked) {
            arguments.append(u"--unlock"_s);
        }
        desktop::Process &keyring = m_desktop->launch(u"gnome-keyring-daemon"_s, arguments);
        if (start == Start::unlocked) {
            keyring.write(password.toUtf8());
        }
        keyring.closeInput();
        m_bus.awaitOwner(secretsName);
        return keyring;
    }
    void endKeyring(desktop::Process &keyring)
    {
        keyring.kill();
        m_bus.awaitNoOwner(secretsName);
    }
    /// A keyring with a locked collection.
    desktop::Process &startLockedKeyring()
    {
        endKeyring(startKeyring(Start::unlocked));
        return startKeyring(Start::locked);
    }
    void startPrompter()
    {
        m_desktop->launch(u"/usr/libexec/gcr-prompter"_s);
        m_bus.awaitOwner(u"org.gnome.keyring.SystemPrompter"_s);
    }
    /// The prompt once it has the keyboard.
    xcb_window_t awaitPrompt()
    {
        const xcb_window_t prompt = m_desktop->windows().awaitWindow({.className = u"gcr-prompter"_s});
        m_desktop->windows().awaitActive(prompt);
        return prompt;
    }

    AdoptedDesktop m_desktop;
    BusClient m_bus;
};

/// A job that runs while the test does something else.
template <typename Result>
class Running final {
public:
    explicit Running(QCoro::Task<Result> task) { keep(std::move(task), m_result); }

    [[nodiscard]] bool hasEnded() const { return m_result->has_value(); }
    Result result()
    {
        waitUntil([this] { return hasEnded(); }, u"the key store's answer"_s, 20s);
        return **m_result;
    }

private:
    static QCoro::Task<void> keep(QCoro::Task<Result> task, std::shared_ptr<std::optional<Result>> result)
    {
        *result = co_await task;
    }

    std::shared_ptr<std::optional<Result>> m_result = std::make_shared<std::optional<Result>>();
};

} // namespace

TEST_F(SecretServiceTrouble, AsksThroughTheDesktopsPromptWhileTheEventLoopRunsOn)
{
    startLockedKeyring();
    startPrompter();
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    const Ticking ticking;
    Running<qint32> adding(store.add(query, "sk-one"));
    const xcb_window_t prompt = awaitPrompt();
    desktop::processEventsFor(300ms); // somebody who looks for the password
    EXPECT_FALSE(adding.hasEnded());
    m_desktop->keyboard().type(password + u'\n');
    EXPECT_EQ(adding.result(), KeyStoreStatus::success);
    EXPECT_GT(ticking.ticks(), 40);
    EXPECT_LT(ticking.longestGap(), 250);
    waitUntil([&] { return !m_desktop->windows().isMapped(prompt); }, u"the prompt to go"_s);
    EXPECT_EQ(awaited(store.copyMatching(query)).data, "sk-one");
}

TEST_F(SecretServiceTrouble, UnlocksAnItemThatItIsAskedFor)
{
    desktop::Process &first = startKeyring(Start::unlocked);
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    ASSERT_EQ(awaited(store.add(query, "sk-one")), KeyStoreStatus::success);
    endKeyring(first);
    startKeyring(Start::locked);
    EXPECT_EQ(awaited(store.copyMatching(query)).status, KeyStoreStatus::interactionNotAllowed)
        << "locked, and nobody shows the prompt";
    startPrompter();
    Running<KeyStoreCopyResult> copying(store.copyMatching(query));
    (void)awaitPrompt();
    m_desktop->keyboard().type(password + u'\n');
    const KeyStoreCopyResult copy = copying.result();
    EXPECT_EQ(copy.status, KeyStoreStatus::success);
    EXPECT_EQ(copy.data, "sk-one");
}

TEST_F(SecretServiceTrouble, MakesTheFirstCollectionThroughThePrompt)
{
    startKeyring(Start::locked);
    startPrompter();
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    Running<qint32> adding(store.add(query, "sk-one"));
    (void)awaitPrompt();
    // Somebody thinks of a password; the prompt takes the keyboard meanwhile, which no event tells.
    desktop::processEventsFor(300ms);
    // The password, and once more.
    m_desktop->keyboard().type(password);
    m_desktop->keyboard().press(u"Tab"_s);
    m_desktop->keyboard().type(password + u'\n');
    EXPECT_EQ(adding.result(), KeyStoreStatus::success);
    EXPECT_EQ(awaited(store.copyMatching(query)).data, "sk-one");
}

TEST_F(SecretServiceTrouble, SaysThatNobodyIsThereToMakeTheFirstCollection)
{
    startKeyring(Start::locked);
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    EXPECT_EQ(awaited(store.add(query, "sk")), KeyStoreStatus::interactionNotAllowed);
}

TEST_F(SecretServiceTrouble, UsesADefaultCollectionThatEndsWithTheSession)
{
    startKeyring(Start::locked);
    m_bus.call(secretsName, u"/org/freedesktop/secrets"_s, u"org.freedesktop.Secret.Service"_s, u"SetAlias"_s,
               {u"default"_s, QVariant::fromValue(QDBusObjectPath(u"/org/freedesktop/secrets/collection/session"_s))});
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(awaited(store.add(query, "sk-short-lived")), KeyStoreStatus::success);
    const std::string log = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("ends with the session"), std::string::npos) << log;
    EXPECT_EQ(log.find("sk-short-lived"), std::string::npos);
    EXPECT_EQ(awaited(store.copyMatching(query)).data, "sk-short-lived");
}

TEST_F(SecretServiceTrouble, EndsAtTheBoundWhenTheStoreHangs)
{
    desktop::Process &keyring = startKeyring(Start::unlocked);
    SecretServiceKeyStore store(u"Orvesa Translate"_s, {.answer = 800ms, .prompt = 60s});
    ASSERT_EQ(awaited(store.add(query, "sk")), KeyStoreStatus::success);
    keyring.freeze();
    const Ticking ticking;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(awaited(store.copyMatching(query)).status, KeyStoreStatus::notAvailable);
    EXPECT_GE(timer.elapsed(), 700);
    EXPECT_LT(timer.elapsed(), 3000);
    EXPECT_GT(ticking.ticks(), 50);
    EXPECT_LT(ticking.longestGap(), 250);
    keyring.thaw();
    EXPECT_EQ(awaited(store.copyMatching(query)).data, "sk") << "and is asked again the next time";
}

TEST_F(SecretServiceTrouble, EndsSoonWhenTheStoreHangsDuringItsPrompt)
{
    desktop::Process &keyring = startLockedKeyring();
    startPrompter();
    SecretServiceKeyStore store(u"Orvesa Translate"_s, {.answer = 800ms, .prompt = 60s});
    Running<qint32> adding(store.add(query, "sk"));
    (void)awaitPrompt();
    keyring.freeze();
    EXPECT_EQ(adding.result(), KeyStoreStatus::notAvailable);
    keyring.thaw();
}

TEST_F(SecretServiceTrouble, EndsAtOnceWhenTheStoreIsKilledDuringItsPrompt)
{
    desktop::Process &keyring = startLockedKeyring();
    startPrompter();
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    Running<qint32> adding(store.add(query, "sk"));
    (void)awaitPrompt();
    QElapsedTimer timer;
    timer.start();
    keyring.kill();
    EXPECT_EQ(adding.result(), KeyStoreStatus::notAvailable);
    EXPECT_LT(timer.elapsed(), 3000);
}

TEST_F(SecretServiceTrouble, EndsAtOnceWhenTheStoreIsKilledWhileItIsAsked)
{
    desktop::Process &keyring = startKeyring(Start::unlocked);
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    ASSERT_EQ(awaited(store.add(query, "sk")), KeyStoreStatus::success);
    keyring.freeze();
    Running<KeyStoreCopyResult> copying(store.copyMatching(query));
    desktop::processEventsFor(100ms);
    EXPECT_FALSE(copying.hasEnded());
    QElapsedTimer timer;
    timer.start();
    keyring.kill();
    EXPECT_EQ(copying.result().status, KeyStoreStatus::notAvailable);
    EXPECT_LT(timer.elapsed(), 2000);
}

TEST_F(SecretServiceTrouble, KeepsTheContractWhenItIsClosedWhileTheStoreHangs)
{
    desktop::Process &keyring = startKeyring(Start::unlocked);
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    ASSERT_EQ(awaited(store.add(query, "sk")), KeyStoreStatus::success);
    keyring.freeze();
    tests::expectKeyStoreClosingContract(store);
    keyring.thaw();
}

TEST_F(SecretServiceTrouble, FindsAStoreThatCameBack)
{
    desktop::Process &first = startKeyring(Start::unlocked);
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    ASSERT_EQ(awaited(store.add(query, "sk-kept")), KeyStoreStatus::success);
    endKeyring(first);
    EXPECT_EQ(awaited(store.copyMatching(query)).status, KeyStoreStatus::notAvailable);
    EXPECT_EQ(awaited(store.update(query, "sk")), KeyStoreStatus::notAvailable);
    EXPECT_EQ(awaited(store.remove(query)), KeyStoreStatus::notAvailable);
    startKeyring(Start::unlocked);
    EXPECT_EQ(awaited(store.copyMatching(query)).data, "sk-kept");
}

} // namespace orvesa
