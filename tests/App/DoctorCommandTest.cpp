// The commands "doctor" and "autostart": what their words mean, and what the page says of every state of a desktop.

#include "App/DoctorCommand.h"

#include "AI/ServiceAddresses.h"
#include "AI/ServiceReach.h"
#include "AI/SystemProxies.h"
#include "App/AutostartCommand.h"
#include "App/DoctorSentences.h"
#include "Core/KeychainService.h"
#include "Core/SettingsStore.h"
#include "Platform/AutostartPort.h"
#include "Platform/SingleInstancePort.h"
#include "fakes/Awaited.h"
#include "fakes/FakeHotKeys.h"
#include "fakes/FakeKeyStore.h"
#include "fakes/FakePreferredLanguages.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/QtPrinting.h"
#include "service/LoopbackService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcessEnvironment>
#include <QTcpServer>

#include <set>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using CommandLine::Autostart;
using CommandLine::Doctor;
using CommandLine::ExitCode;
using CommandLine::Request;
using CommandLine::UsageError;
using Inspection = DesktopInspectionPort;
using Verdict = DoctorFinding::Verdict;

class FakeInspection final : public DesktopInspectionPort {
public:
    [[nodiscard]] QString desktopName() const override { return u"XFCE"_s; }
    [[nodiscard]] Session session() const override { return currentSession; }
    [[nodiscard]] bool hasDisplay() const override { return isDisplayThere; }
    [[nodiscard]] bool hasShortcutPortal() const override { return hasPortal; }
    [[nodiscard]] Accessibility accessibility() const override { return Accessibility::switchedOn; }
    [[nodiscard]] KeyStore keyStore() const override { return currentKeyStore; }
    [[nodiscard]] Tray tray() const override { return Tray::statusNotifier; }
    [[nodiscard]] QCoro::Task<std::optional<QStringList>> missingRecognitionLanguages() override { co_return missing; }
    [[nodiscard]] ScreenCapture screenCapture() const override { return ScreenCapture::there; }

    Session currentSession = Session::x11;
    bool isDisplayThere = true;
    bool hasPortal = true;
    KeyStore currentKeyStore = KeyStore::unlocked;
    std::optional<QStringList> missing = QStringList();
};

class FakeInstance final : public SingleInstancePort {
public:
    [[nodiscard]] Claim claim(const QString &, Handlers) override { return Claim::unavailable; }
    [[nodiscard]] bool ask(const QString &, const QString &) override { return false; }
    [[nodiscard]] std::optional<QList<quint32>> heldShortcuts(const QString &) override { return held; }

    std::optional<QList<quint32>> held;
};

class FakeAutostart final : public AutostartPort {
public:
    [[nodiscard]] bool isOn() const override { return on; }
    [[nodiscard]] bool turnOn() override { return set(true); }
    [[nodiscard]] bool turnOff() override { return set(false); }

    bool on = false;
    bool isWritable = true;

private:
    bool set(bool value)
    {
        on = isWritable ? value : on;
        return isWritable;
    }
};

class DoctorCommandTest : public ::testing::Test {
protected:
    [[nodiscard]] QList<DoctorFinding> examine(Doctor::Reach reach = Doctor::Reach::machine)
    {
        const ServiceAddresses addresses(environment);
        ServiceReach serviceReach(network, proxies, std::chrono::seconds(5));
        const DoctorCommand command(
            {inspection, hotKeys, instance, settings, keychain, autostart, addresses, serviceReach}, u"current"_s,
            u"Title"_s);
        return awaited(command.examine(Doctor{reach}));
    }

    [[nodiscard]] QString page(Doctor::Reach reach = Doctor::Reach::machine)
    {
        return DoctorReport::text(u"Title"_s, examine(reach));
    }

    [[nodiscard]] static std::optional<DoctorFinding> about(const QString &subject,
                                                            const QList<DoctorFinding> &findings)
    {
        for (const DoctorFinding &finding : findings) {
            if (finding.subject.contains(subject)) {
                return finding;
            }
        }
        ADD_FAILURE() << "nothing about " << subject.toStdString();
        return DoctorFinding{};
    }

    FakeInspection inspection;
    FakeHotKeys hotKeys;
    FakeInstance instance;
    FakeAutostart autostart;
    FakeUserDefaults defaults;
    FakePreferredLanguages languages;
    SettingsStore settings{defaults, languages};
    FakeKeyStore keyStore;
    KeychainService keychain{keyStore, u"current"_s, {}};
    QProcessEnvironment environment;
    QNetworkAccessManager network;
    SystemProxies proxies{network};
};

TEST_F(DoctorCommandTest, NothingIsWrongWhereEverythingIsThere)
{
    keyStore.setItem(u"current"_s, keychainAccount(settings.activeConfig().providerType), "a secret");
    instance.held = {1, 2, 3};
    const QList<DoctorFinding> findings = examine();
    EXPECT_FALSE(DoctorReport::isAnythingWrong(findings)) << page().toStdString();
    EXPECT_TRUE(page().endsWith(u"Nothing is wrong."_s));
    EXPECT_EQ(hotKeys.liveRegistrations(), 0U) << "what the utility holds is not asked for";
}

TEST_F(DoctorCommandTest, ThePageHoldsNoKeyNoPromptAndNoAddress)
{
    keyStore.setItem(u"current"_s, keychainAccount(settings.activeConfig().providerType), "hidden-secret");
    CustomPrompt prompt;
    prompt.name = u"hidden-name"_s;
    prompt.hotKey = KeyCombo{96, 0, u"F5"_s};
    settings.setCustomPrompts({prompt});
    for (const char *const name : {"OPENAI_BASE_URL", "XAI_BASE_URL", "ANTHROPIC_BASE_URL", "GOOGLE_GEMINI_BASE_URL"}) {
        environment.insert(QString::fromLatin1(name), u"http://hidden-host.example/v1"_s);
    }
    const QString text = page(Doctor::Reach::network);
    EXPECT_TRUE(text.contains(u"prompt 1"_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u"is not allowed"_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u"GOOGLE_GEMINI_BASE_URL must be"_s)) << text.toStdString();
    EXPECT_FALSE(text.contains(u"hidden"_s)) << text.toStdString();
}

TEST_F(DoctorCommandTest, EachShortcutIsHeldFreeOrTaken)
{
    const KeyCombo translate = settings.combo(HotKeyAction::translateSelection);
    hotKeys.takeByAnother(translate.keyCode, translate.carbonModifiers);
    QList<DoctorFinding> findings = examine();
    EXPECT_EQ(about(u"translateSelection"_s, findings)->verdict, Verdict::wrong);
    EXPECT_EQ(about(u"translateSelection"_s, findings)->observation, u"taken by another program"_s);
    EXPECT_EQ(about(u"polishSelection"_s, findings)->observation, u"free"_s);
    EXPECT_EQ(about(u"Utility"_s, findings)->observation, u"not running"_s);
    EXPECT_EQ(hotKeys.liveRegistrations(), 0U) << "what was free is free afterwards";

    instance.held = {hotKeyIdentifier(HotKeyAction::polishSelection)};
    findings = examine();
    EXPECT_EQ(about(u"polishSelection"_s, findings)->observation, u"held by the utility"_s);
    EXPECT_EQ(about(u"ocrTranslate"_s, findings)->verdict, Verdict::wrong) << "free, and yet not held";
}

TEST_F(DoctorCommandTest, WithoutADisplayThatAloneIsWrong)
{
    keyStore.setItem(u"current"_s, keychainAccount(settings.activeConfig().providerType), "a secret");
    inspection.currentSession = Inspection::Session::none;
    inspection.isDisplayThere = false;
    const QList<DoctorFinding> findings = examine();
    EXPECT_EQ(about(u"Desktop"_s, findings)->verdict, Verdict::wrong);
    EXPECT_EQ(about(u"translateSelection"_s, findings)->verdict, Verdict::note);
    EXPECT_TRUE(page().endsWith(u"Wrong: 1 of %1."_s.arg(findings.size()))) << page().toStdString();
}

TEST_F(DoctorCommandTest, ADisplayThatLetsNobodyInIsNotBlamedOnXWayland)
{
    inspection.isDisplayThere = false;
    EXPECT_TRUE(about(u"Desktop"_s, examine())->remedy.contains(u"XAUTHORITY"_s));
    inspection.currentSession = Inspection::Session::wayland;
    EXPECT_TRUE(about(u"Desktop"_s, examine())->remedy.contains(u"XWayland"_s));
}

TEST_F(DoctorCommandTest, AWaylandDesktopsPortalIsNotAskedForShortcuts)
{
    inspection.currentSession = Inspection::Session::wayland;
    hotKeys.setRegisterAnswer(HotKeyRegistration{HotKeyStatus::hotKeyExists, 0});
    EXPECT_EQ(about(u"translateSelection"_s, examine())->verdict, Verdict::note);
    inspection.hasPortal = false;
    EXPECT_EQ(about(u"translateSelection"_s, examine())->observation,
              u"this Wayland desktop has no portal for shortcuts"_s);
    instance.held = {hotKeyIdentifier(HotKeyAction::translateSelection)};
    EXPECT_EQ(about(u"translateSelection"_s, examine())->verdict, Verdict::wrong) << "asked of a portal without them";
    inspection.hasPortal = true;
    EXPECT_EQ(about(u"translateSelection"_s, examine())->verdict, Verdict::good);
}

TEST_F(DoctorCommandTest, AStoreThatIsNotOpenIsNotAsked)
{
    for (const Inspection::KeyStore state :
         {Inspection::KeyStore::locked, Inspection::KeyStore::absent, Inspection::KeyStore::silent,
          Inspection::KeyStore::startable, Inspection::KeyStore::unreadable}) {
        inspection.currentKeyStore = state;
        EXPECT_EQ(about(u"API key"_s, examine())->verdict, Verdict::note);
    }
    EXPECT_TRUE(keyStore.calls().empty()) << "a locked store would open its prompt";
    inspection.currentKeyStore = Inspection::KeyStore::unlocked;
    EXPECT_EQ(about(u"API key"_s, examine())->observation, u"missing"_s);
}

TEST_F(DoctorCommandTest, AKeyThatTheStoreDoesNotGiveIsNotCalledMissing)
{
    keyStore.setStatus(FakeKeyStore::Operation::copyMatching, KeyStoreStatus::userCanceled);
    const std::optional<DoctorFinding> finding = about(u"API key"_s, examine());
    EXPECT_EQ(finding->verdict, Verdict::wrong);
    EXPECT_EQ(finding->observation, u"not looked for, because the key store does not give it"_s);
    EXPECT_EQ(keyStore.calls().size(), 1U) << "its prompt would open again";
}

TEST_F(DoctorCommandTest, AServiceThatDoesNotAnswerIsWaitedForNoLongerThanTheBound)
{
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    ServiceReach reach(network, proxies, std::chrono::milliseconds(100));
    const ServiceReach::Result result =
        awaited(reach.ask(QUrl(u"http://127.0.0.1:%1/v1"_s.arg(silent.serverPort()))));
    EXPECT_EQ(result.outcome, ServiceReach::Outcome::timedOut);
    EXPECT_GE(result.elapsed, std::chrono::milliseconds(100));
    EXPECT_EQ(network.findChildren<QNetworkReply *>().size(), 1) << "goes when it is done with its own signal";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(network.findChildren<QNetworkReply *>().isEmpty());
}

TEST_F(DoctorCommandTest, TheNetworkIsAskedOnlyWhenWanted)
{
    service::LoopbackService service;
    service.setResponder(
        [](const service::ServiceRequest &) { return service::ServiceResponse::json("{\"error\":\"no key\"}"); });
    environment.insert(u"OPENAI_BASE_URL"_s, service.address() + u"/v1"_s);
    settings.setDefaultProvider(AIProviderType::openAI);
    keyStore.setItem(u"current"_s, keychainAccount(AIProviderType::openAI), "a secret");
    EXPECT_FALSE(page().contains(u"Network"_s));
    EXPECT_EQ(service.connectionCount(), 0);

    const std::optional<DoctorFinding> finding = about(u"Network"_s, examine(Doctor::Reach::network));
    EXPECT_EQ(finding->verdict, Verdict::good) << finding->observation.toStdString();
    EXPECT_TRUE(finding->observation.startsWith(u"OpenAI answers (HTTP 200"_s)) << finding->observation.toStdString();
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_FALSE(service.requests().front().header("authorization").has_value()) << "no key goes out";
    EXPECT_TRUE(service.requests().front().body.isEmpty());
}

TEST_F(DoctorCommandTest, AServiceThatIsNotThereIsNamedWithoutItsAddress)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    environment.insert(u"OPENAI_BASE_URL"_s, u"http://127.0.0.1:%1/v1"_s.arg(port));
    settings.setDefaultProvider(AIProviderType::openAI);
    const std::optional<DoctorFinding> finding = about(u"Network"_s, examine(Doctor::Reach::network));
    EXPECT_EQ(finding->verdict, Verdict::wrong);
    EXPECT_EQ(finding->observation, u"OpenAI cannot be reached: the connection was refused"_s);
    EXPECT_FALSE((finding->observation + finding->remedy).contains(u"127."_s));
}

TEST(DoctorSentences, WhateverIsWrongHasARemedyAndItsOwnSentence)
{
    QList<DoctorFinding> findings;
    using Session = Inspection::Session;
    for (const Session session : {Session::none, Session::x11, Session::wayland}) {
        findings.append(DoctorSentences::session(session, session != Session::none, u"X"_s));
    }
    findings.append(DoctorSentences::session(Session::x11, false, u"X"_s));
    using Accessibility = Inspection::Accessibility;
    for (const Accessibility state : {Accessibility::noSessionBus, Accessibility::noAccessibilityBus,
                                      Accessibility::switchedOff, Accessibility::switchedOn}) {
        findings.append(DoctorSentences::accessibility(state));
    }
    using KeyStore = Inspection::KeyStore;
    for (const KeyStore state :
         {KeyStore::noSessionBus, KeyStore::noLibrary, KeyStore::absent, KeyStore::startable, KeyStore::noCollection,
          KeyStore::unreadable, KeyStore::locked, KeyStore::unlocked, KeyStore::silent}) {
        findings.append(DoctorSentences::keyStore(state));
    }
    for (const Inspection::Tray tray :
         {Inspection::Tray::none, Inspection::Tray::embedding, Inspection::Tray::statusNotifier}) {
        findings.append(DoctorSentences::tray(tray));
    }
    for (const qint32 status : {HotKeyStatus::hotKeyExists, HotKeyStatus::hotKeyInvalid, HotKeyStatus::notAvailable}) {
        findings.append(DoctorSentences::shortcut(u"Shortcut"_s, status, true));
    }
    findings.append(DoctorSentences::shortcut(u"Shortcut"_s, HotKeyStatus::noErr, true));
    findings.append(DoctorSentences::portalShortcut(u"Shortcut"_s, true));
    findings.append(DoctorSentences::portalShortcut(u"Shortcut"_s, false));
    for (const Inspection::ScreenCapture state :
         {Inspection::ScreenCapture::noTool, Inspection::ScreenCapture::noPortal, Inspection::ScreenCapture::there}) {
        findings.append(DoctorSentences::screenCapture(state));
    }
    findings.append(DoctorSentences::recognition(std::nullopt));
    findings.append(DoctorSentences::recognition(QStringList{u"tesseract-ocr-jpn"_s}));
    using Outcome = ServiceReach::Outcome;
    for (const Outcome outcome : {Outcome::answered, Outcome::nameNotFound, Outcome::refused, Outcome::timedOut,
                                  Outcome::encryptionFailed, Outcome::proxyFailed, Outcome::unreachable}) {
        findings.append(DoctorSentences::network(u"OpenAI"_s, {outcome, 401, std::chrono::milliseconds(5)}));
    }
    std::set<QString> sentences;
    for (const DoctorFinding &finding : std::as_const(findings)) {
        const QString sentence = finding.subject + finding.observation;
        EXPECT_TRUE(sentences.insert(sentence).second) << sentence.toStdString();
        if (finding.verdict == Verdict::wrong) {
            EXPECT_FALSE(finding.remedy.isEmpty()) << sentence.toStdString();
        }
    }
    EXPECT_TRUE(
        DoctorSentences::recognition(QStringList{u"tesseract-ocr-jpn"_s}).remedy.contains(u"tesseract-ocr-jpn"_s));
}

TEST(DesktopCommandLine, ReadsItsWords)
{
    const auto parse = [](const QStringList &arguments) { return CommandLine::parse(arguments); };
    EXPECT_EQ(parse({u"doctor"_s}), Request(Doctor{Doctor::Reach::machine}));
    EXPECT_EQ(parse({u"doctor"_s, u"--network"_s}), Request(Doctor{Doctor::Reach::network}));
    EXPECT_EQ(parse({u"autostart"_s, u"on"_s}), Request(Autostart{Autostart::Action::on}));
    EXPECT_EQ(parse({u"autostart"_s, u"off"_s}), Request(Autostart{Autostart::Action::off}));
    EXPECT_EQ(parse({u"autostart"_s, u"status"_s}), Request(Autostart{Autostart::Action::status}));
    for (const QStringList &arguments :
         {QStringList{u"doctor"_s, u"now"_s}, QStringList{u"doctor"_s, u"--to"_s, u"x"_s}, QStringList{u"autostart"_s},
          QStringList{u"autostart"_s, u"maybe"_s}, QStringList{u"autostart"_s, u"on"_s, u"off"_s},
          QStringList{u"autostart"_s, u"on"_s, u"--network"_s}, QStringList{u"--network"_s},
          QStringList{u"translate"_s, u"--network"_s, u"x"_s}}) {
        EXPECT_TRUE(std::holds_alternative<UsageError>(parse(arguments))) << arguments.join(u' ').toStdString();
    }
}

TEST(AutostartCommand, SaysWhenTheEntryCannotBeChanged)
{
    FakeAutostart autostart;
    const AutostartCommand command(autostart);
    EXPECT_EQ(command.run({Autostart::Action::on}), ExitCode::success);
    EXPECT_TRUE(autostart.on);
    autostart.isWritable = false;
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(command.run({Autostart::Action::off}), ExitCode::failure);
    EXPECT_FALSE(::testing::internal::GetCapturedStderr().empty());
    EXPECT_TRUE(autostart.on);
}

} // namespace
} // namespace orvesa
