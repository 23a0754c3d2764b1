#include "Core/HotKeyService.h"
#include "Core/HotKeyError.h"
#include "fakes/FakeHotKeys.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <memory>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

const KeyCombo optionD{2, 0x800, u"D"_s};
const KeyCombo optionS{1, 0x800, u"S"_s};

class HotKeyServiceTest : public ::testing::Test {
protected:
    /// The error of a registration, or nothing when it succeeded.
    std::optional<HotKeyError> registrationError(
        quint32 id, const KeyCombo &combo, std::function<void()> handler = [] {})
    {
        try {
            m_service->registerHotKey(id, combo, std::move(handler));
        } catch (const HotKeyError &error) {
            return error;
        }
        return std::nullopt;
    }

    FakeHotKeys m_system;
    std::unique_ptr<HotKeyService> m_service = std::make_unique<HotKeyService>(m_system);
};

TEST(HotKeyErrorDescription, endsInTheStatus)
{
    EXPECT_EQ(HotKeyError(HotKeyError::Kind::installFailed, -9862).errorDescription(),
              u"Failed to install hotkey event handler (status: -9862)"_s);
    EXPECT_EQ(HotKeyError(HotKeyError::Kind::registrationFailed, -9878).errorDescription(),
              u"Failed to register global hotkey (status: -9878)"_s);
}

TEST_F(HotKeyServiceTest, installsNothingBeforeTheFirstRegistration)
{
    EXPECT_EQ(m_system.installs(), 0);
}

TEST_F(HotKeyServiceTest, installsTheHandlerOnceForAllShortcuts)
{
    m_service->registerHotKey(1, optionD, [] {});
    m_service->registerHotKey(2, optionS, [] {});
    m_service->unregisterAll();
    m_service->registerHotKey(1, optionD, [] {});
    EXPECT_EQ(m_system.installs(), 1);
}

TEST_F(HotKeyServiceTest, passesKeyFaceModifiersSignatureAndIdentifierOn)
{
    m_service->registerHotKey(1007, {35, 0x1900, u"P"_s}, [] {});
    ASSERT_EQ(m_system.liveRegistrations(), 1U);
    const FakeHotKeys::Registration &registration = m_system.registrations().begin()->second;
    EXPECT_EQ(registration.keyCode, 35U);
    EXPECT_EQ(registration.modifiers, 0x1900U);
    EXPECT_EQ(registration.keyLabel, u"P"_s);
    EXPECT_EQ(registration.id.id, 1007U);
    EXPECT_EQ(registration.id.signature, (quint32{'K'} << 24) + (quint32{'V'} << 16) + (quint32{'H'} << 8) + 'K');
}

TEST_F(HotKeyServiceTest, runsTheClosureOfTheShortcutThatWasPressed)
{
    int first = 0;
    int second = 0;
    m_service->registerHotKey(1, optionD, [&] { ++first; });
    m_service->registerHotKey(2, optionS, [&] { ++second; });
    EXPECT_EQ(m_system.press(1, 0x800), HotKeyStatus::noErr);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(m_system.press(2, 0x800), HotKeyStatus::noErr);
    EXPECT_EQ(first, 1);
}

TEST_F(HotKeyServiceTest, doesNotCompareTheSignature)
{
    int presses = 0;
    m_service->registerHotKey(1, optionD, [&] { ++presses; });
    EXPECT_EQ(m_system.fire({0, 1}), HotKeyStatus::noErr);
    EXPECT_EQ(presses, 1);
}

TEST_F(HotKeyServiceTest, replacesTheRegistrationOfTheSameIdentifier)
{
    int presses = 0;
    m_service->registerHotKey(1, optionD, [&] { presses += 1; });
    m_service->registerHotKey(1, optionS, [&] { presses += 10; });
    EXPECT_EQ(m_system.liveRegistrations(), 1U);
    EXPECT_EQ(m_system.press(2, 0x800), std::nullopt);
    EXPECT_EQ(m_system.press(1, 0x800), HotKeyStatus::noErr);
    EXPECT_EQ(presses, 10);
}

TEST_F(HotKeyServiceTest, releasesTheOldRegistrationBeforeItTakesTheSameKeysAgain)
{
    m_service->registerHotKey(1, optionD, [] {});
    EXPECT_EQ(registrationError(1, optionD), std::nullopt);
    EXPECT_EQ(m_system.liveRegistrations(), 1U);
}

TEST_F(HotKeyServiceTest, failsForACombinationThatIsTakenAndLeavesTheFirstWorking)
{
    int first = 0;
    int second = 0;
    m_service->registerHotKey(1, optionD, [&] { ++first; });
    const auto error = registrationError(2, optionD, [&] { ++second; });
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), HotKeyError::Kind::registrationFailed);
    EXPECT_EQ(error->status(), HotKeyStatus::hotKeyExists);
    EXPECT_EQ(m_system.press(2, 0x800), HotKeyStatus::noErr);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(m_system.fire({HotKeyService::signature, 2}), HotKeyStatus::noErr);
    EXPECT_EQ(second, 0);
}

TEST_F(HotKeyServiceTest, losesTheOldRegistrationButKeepsTheClosureWhenAReplacementFails)
{
    int presses = 0;
    m_system.takeByAnother(1, 0x800);
    m_service->registerHotKey(1, optionD, [&] { presses += 1; });
    EXPECT_TRUE(registrationError(1, optionS, [&] { presses += 10; }).has_value());
    EXPECT_EQ(m_system.liveRegistrations(), 0U);
    m_system.fire({HotKeyService::signature, 1});
    EXPECT_EQ(presses, 1);
    m_service->unregisterAll();
    EXPECT_EQ(m_system.unregistered().size(), 1U);
}

TEST_F(HotKeyServiceTest, failsWhenNoReferenceCameBack)
{
    m_system.setRegisterAnswer(HotKeyRegistration{HotKeyStatus::noErr, 0});
    const auto error = registrationError(1, optionD);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), HotKeyError::Kind::registrationFailed);
    EXPECT_EQ(error->status(), HotKeyStatus::noErr);
}

TEST_F(HotKeyServiceTest, takesAReferenceWithABadStatusAsAFailure)
{
    m_system.setRegisterAnswer(HotKeyRegistration{HotKeyStatus::hotKeyInvalid, 5});
    ASSERT_TRUE(registrationError(1, optionD).has_value());
    m_service->unregisterAll();
    EXPECT_TRUE(m_system.unregistered().empty());
}

TEST_F(HotKeyServiceTest, registersNothingWhenTheHandlerCannotBeInstalledAndTriesAgainNextTime)
{
    m_system.setInstallStatus(HotKeyStatus::notAvailable);
    const auto error = registrationError(1, optionD);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->kind(), HotKeyError::Kind::installFailed);
    EXPECT_EQ(error->status(), HotKeyStatus::notAvailable);
    EXPECT_EQ(m_system.liveRegistrations(), 0U);
    m_system.setInstallStatus(HotKeyStatus::noErr);
    EXPECT_EQ(registrationError(1, optionD), std::nullopt);
    EXPECT_EQ(m_system.installs(), 2);
}

TEST_F(HotKeyServiceTest, forgetsEverythingAtOnceButKeepsTheHandler)
{
    int presses = 0;
    m_service->registerHotKey(1, optionD, [&] { ++presses; });
    m_service->registerHotKey(2, optionS, [&] { ++presses; });
    m_service->unregisterAll();
    EXPECT_EQ(m_system.liveRegistrations(), 0U);
    EXPECT_TRUE(m_system.isHandlerInstalled());
    EXPECT_EQ(m_system.fire({HotKeyService::signature, 1}), HotKeyStatus::noErr);
    EXPECT_EQ(presses, 0);
    m_service->unregisterAll();
    EXPECT_EQ(m_system.unregistered().size(), 2U);
}

TEST_F(HotKeyServiceTest, swallowsAnEventWithoutAClosure)
{
    m_service->registerHotKey(1, optionD, [] {});
    EXPECT_EQ(m_system.fire({HotKeyService::signature, 77}), HotKeyStatus::noErr);
}

TEST_F(HotKeyServiceTest, letsAClosureRegisterAnew)
{
    int presses = 0;
    m_service->registerHotKey(1, optionD, [&] {
        ++presses;
        m_service->unregisterAll();
        m_service->registerHotKey(1, optionS, [&] { presses += 10; });
        ++presses;
    });
    m_system.press(2, 0x800);
    EXPECT_EQ(presses, 2);
    m_system.press(1, 0x800);
    EXPECT_EQ(presses, 12);
}

TEST_F(HotKeyServiceTest, cleansUpWhenItIsDestroyed)
{
    m_service->registerHotKey(1, optionD, [] {});
    m_service.reset();
    EXPECT_EQ(m_system.liveRegistrations(), 0U);
    EXPECT_FALSE(m_system.isHandlerInstalled());
}

TEST_F(HotKeyServiceTest, removesNoHandlerThatItDidNotInstall)
{
    const qint32 foreign = 17;
    EXPECT_EQ(m_system.installHandler([](HotKeyID) { return foreign; }), HotKeyStatus::noErr);
    m_service.reset();
    EXPECT_TRUE(m_system.isHandlerInstalled());
}

} // namespace
} // namespace orvesa
