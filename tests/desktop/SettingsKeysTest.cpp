// API keys in the settings window: typed, saved, tested, cleared, and seen by nobody else.

#include "desktop/SettingsFixture.h"

#include <QDBusVariant>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using service::ServiceRequest;
using service::ServiceResponse;

namespace {

const QString providersSubtitle = u"API keys and models for each AI provider"_s;

/// Everything that programs tell screen readers while it lives.
class SpokenTexts final : public QObject {
    Q_OBJECT

public:
    explicit SpokenTexts(const Desktop &desktop)
        : m_name(u"spoken-texts"_s), m_bus(QDBusConnection::connectToBus(desktop.accessibilityBusAddress(), m_name))
    {
        const auto wish = QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s,
                                                         u"org.a11y.atspi.Registry"_s, u"RegisterEvent"_s);
        for (const QString &event : {u"object:text-changed"_s, u"object:property-change"_s}) {
            QDBusMessage registration = wish;
            registration.setArguments({event});
            m_bus.call(registration);
        }
        m_bus.connect({}, {}, u"org.a11y.atspi.Event.Object"_s, u"TextChanged"_s, this, SLOT(note(QDBusMessage)));
        m_bus.connect({}, {}, u"org.a11y.atspi.Event.Object"_s, u"PropertyChange"_s, this, SLOT(note(QDBusMessage)));
    }
    ~SpokenTexts() override { QDBusConnection::disconnectFromBus(m_name); }

    [[nodiscard]] const QStringList &texts() const { return m_texts; }

private Q_SLOTS:
    void note(const QDBusMessage &message)
    {
        const auto value = message.arguments().value(3).value<QDBusVariant>();
        m_texts.append(value.variant().toString());
    }

private:
    QString m_name;
    QDBusConnection m_bus;
    QStringList m_texts;
};

} // namespace

class SettingsKeys : public SettingsFixture {
protected:
    void openProviders()
    {
        openSettings();
        settings->choose(u"Providers"_s, providersSubtitle);
    }

    /// Types into the key's field of the service.
    void typeKey(const QString &text, const QString &provider = u"OpenAI"_s)
    {
        settings->click(u"API Key"_s, {}, provider);
        desktop->keyboard().type(text);
    }

    void press(const QString &button, const QString &provider = u"OpenAI"_s)
    {
        const Accessible found = settings->await(button, u"push button"_s, provider);
        waitUntil([&] { return found.has(AccessibleState::enabled); }, u"'%1' to be enabled"_s.arg(button));
        settings->click(found);
    }

    [[nodiscard]] bool isEnabled(const QString &button, const QString &provider = u"OpenAI"_s)
    {
        return settings->await(button, u"push button"_s, provider).has(AccessibleState::enabled);
    }
};

TEST_F(SettingsKeys, SavingAKeyTakesTheBadgeAwayAtOnceAndClearingBringsItBack)
{
    setUpWithoutKey();
    const SpokenTexts spoken(*desktop); // there before the program asks whether anybody listens
    openProviders();
    settings->awaitText(u"No API key"_s);
    EXPECT_FALSE(isEnabled(u"Save"_s));
    EXPECT_FALSE(isEnabled(u"Test"_s));
    EXPECT_FALSE(isEnabled(u"Clear"_s));

    typeKey(u" zebra-quartz "_s);
    const Accessible field = settings->await(u"API Key"_s, {}, u"OpenAI"_s);
    EXPECT_FALSE(field.text().contains(u"zebra"_s));
    press(u"Save"_s);
    settings->awaitText(u"API key saved to Keychain."_s);
    settings->awaitNoText(u"No API key"_s);
    settings->awaitText(u"Key saved"_s);
    EXPECT_EQ(storedKey(), QByteArray("zebra-quartz"));
    EXPECT_FALSE(isEnabled(u"Save"_s));

    // Letter by letter, no screen reader was told any of it, and nothing brings it back into the field.
    waitUntil([&] { return spoken.texts().count(u"•"_s) >= 14; }, u"the letters to be spoken of"_s);
    for (const QString &text : spoken.texts())
        EXPECT_FALSE(text.size() == 1 && u"zebra-quartz"_s.contains(text)) << text.toStdString();
    EXPECT_FALSE(settings->root().dump().contains(u"zebra"_s));
    settings->click(u"API Key"_s, {}, u"OpenAI"_s);
    desktop->keyboard().press(u"Ctrl+z"_s);
    desktop->keyboard().press(u"Ctrl+a"_s);
    desktop->keyboard().press(u"Ctrl+c"_s);
    EXPECT_FALSE(isEnabled(u"Save"_s));
    EXPECT_FALSE(preferences().contains(u"zebra"_s));

    press(u"Clear"_s);
    settings->awaitText(u"API key removed."_s);
    settings->awaitText(u"No API key"_s);
    settings->awaitNoText(u"Key saved"_s);
    EXPECT_EQ(storedKey(), std::nullopt);
}

TEST_F(SettingsKeys, AKeyOfBlanksIsSavedAsNone)
{
    setUpWithoutKey();
    openProviders();
    typeKey(u"   "_s);
    press(u"Save"_s);
    settings->awaitText(u"Key saved"_s);
    settings->awaitText(u"No API key"_s);
    EXPECT_EQ(storedKey(), QByteArray(""));
}

TEST_F(SettingsKeys, AKeyIsTestedWithTheServiceAndNothingOfItStored)
{
    setUp();
    service.setScript({ServiceResponse::json(R"({"data":[]})"),
                       ServiceResponse::text(401, R"({"error":{"message":"Incorrect API key provided."}})")});
    openProviders();
    press(u"Test"_s);
    settings->awaitText(u"✓ API key is valid."_s);
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_EQ(service.requests()[0].method, "GET");
    EXPECT_EQ(service.requests()[0].header("authorization"), "Bearer " + key);

    typeKey(u"typed "_s);
    press(u"Test"_s);
    const QString refusal = uR"(✗ API request failed: HTTP 401: {"error":{"message":"Incorrect API key provided."}})"_s;
    settings->awaitText(refusal);
    ASSERT_EQ(service.requests().size(), 2U);
    EXPECT_EQ(storedKey(), key);
}

TEST_F(SettingsKeys, ATestWithoutANetworkTellsSo)
{
    setUp();
    program->setService(u"http://127.0.0.1:1"_s);
    openProviders();
    press(u"Test"_s);
    const auto failure = [this] {
        return settings->root().find([](const Accessible &element) { return element.name().startsWith(u"✗ "_s); });
    };
    waitUntil([&] { return !failure().isNull(); }, u"the failure of a test without a service"_s);
    EXPECT_TRUE(failure().name().startsWith(u"✗ API request failed: "_s)) << failure().name().toStdString();
    EXPECT_FALSE(settings->root().dump().contains(QString::fromUtf8(key)));
    EXPECT_TRUE(isEnabled(u"Test"_s));
}

TEST_F(SettingsKeys, ATestIsLeftByClosingThePage)
{
    setUp();
    service.setScript({ServiceResponse::silence(), ServiceResponse::silence()});
    openProviders();
    press(u"Test"_s);
    settings->awaitText(u"Testing API key…"_s);
    EXPECT_FALSE(isEnabled(u"Test"_s));
    ASSERT_TRUE(service.waitForRequests(1));
    settings->choose(u"General"_s, u"Language, provider and permission preferences"_s);
    settings->choose(u"Providers"_s, providersSubtitle);
    settings->awaitText(u"Key saved"_s);
    EXPECT_FALSE(settings->shows(u"Testing API key…"_s));
    press(u"Test"_s);
    settings->awaitText(u"Testing API key…"_s);
    settings->close();
    settings->open();
    settings->awaitText(u"Key saved"_s);
    EXPECT_FALSE(settings->shows(u"Testing API key…"_s));
    EXPECT_TRUE(program->process().isRunning());
}

TEST_F(SettingsKeys, AnEarlierIdentitysKeyBecomesUsable)
{
    setUpWithoutKey();
    desktop->keyStore().store(u"com.kestrovander.app"_s, u"openai_api_key"_s, "carried");
    openSettings();
    waitUntil([&] { return storedKey() == QByteArray("carried"); }, u"the key to be carried over"_s);
    EXPECT_FALSE(settings->shows(u"No API key"_s));
    settings->choose(u"Providers"_s, providersSubtitle);
    settings->awaitText(u"Key saved"_s);
    press(u"Clear"_s);
    settings->awaitText(u"API key removed."_s);
    settings->choose(u"General"_s, u"Language, provider and permission preferences"_s);
    settings->choose(u"Providers"_s, providersSubtitle);
    settings->awaitText(u"Key saved"_s); // what is left under the earlier identity comes back
}

TEST_F(SettingsKeys, WithoutAKeyStoreSavingTellsWhy)
{
    DesktopOptions options;
    options.keyStore = KeyStore::absent;
    setUpWithoutKey(options);
    openProviders();
    settings->awaitText(u"No API key"_s);
    typeKey(u"lost"_s);
    press(u"Save"_s);
    settings->awaitText(u"Failed to save key: Keychain error (status: -25291)"_s);
    EXPECT_TRUE(isEnabled(u"Save"_s)); // what was typed is still there
    EXPECT_FALSE(settings->shows(u"Key saved"_s));
}

TEST_F(SettingsKeys, ALockedKeyStoreFreezesNothing)
{
    DesktopOptions options;
    options.keyStore = KeyStore::locked;
    setUpWithoutKey(options);
    openProviders();
    typeKey(u"locked"_s);
    press(u"Save"_s);
    // Whatever the desktop asks meanwhile, the window goes on working.
    settings->choose(u"General"_s, u"Language, provider and permission preferences"_s);
    settings->click(u"Thinking Mode"_s, u"check box"_s);
    awaitPreference(u"settings.thinkingEnabled = true"_s);
    settings->choose(u"Providers"_s, providersSubtitle);
    EXPECT_FALSE(settings->shows(u"Key saved"_s));
    settings->awaitText(u"No API key"_s);
    typeKey(u"locked"_s);
    press(u"Save"_s);
    // Nobody is there to ask for the password: the store stays locked, and Save says so.
    settings->awaitText(u"Failed to save key: Keychain error (status: -25308)"_s);
    EXPECT_TRUE(isEnabled(u"Save"_s));
    EXPECT_TRUE(program->process().isRunning());
}

TEST_F(SettingsKeys, AModelIsTypedChosenAndTakenBack)
{
    setUp();
    openProviders();
    settings->click(u"Model"_s, u"text"_s, u"OpenAI"_s);
    desktop->keyboard().type(u" gpt-5.5 "_s);
    awaitPreference(u"settings.model.openAI = \"gpt-5.5\""_s);

    const auto chooseFromMenu = [this](const QStringList &keys) {
        settings->chooseWithKeys(settings->await(u"Model"_s, u"push button"_s, u"OpenAI"_s), keys);
    };
    chooseFromMenu({u"Down"_s, u"Down"_s, u"Return"_s});
    awaitPreference(u"settings.model.openAI = \"gpt-5.4-nano\""_s);
    EXPECT_EQ(settings->await(u"Model"_s, u"text"_s, u"OpenAI"_s).text(), u"gpt-5.4-nano"_s);
    chooseFromMenu({u"Up"_s, u"Return"_s}); // the last one: "Use default"
    awaitNoPreference(u"settings.model.openAI"_s);
    EXPECT_EQ(settings->await(u"Model"_s, u"text"_s, u"OpenAI"_s).text(), QString());
}

} // namespace orvesa::desktop

#include "SettingsKeysTest.moc"
