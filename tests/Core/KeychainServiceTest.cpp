#include "Core/KeychainService.h"
#include "Core/KeychainError.h"
#include "fakes/Awaited.h"
#include "fakes/FakeKeyStore.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using Operation = FakeKeyStore::Operation;
using Failures = KeychainService::Failures;
using ::testing::ElementsAre;

const QString account = u"openai_api_key"_s;
const QString current = u"com.example.current"_s;
const QString first = u"com.example.first"_s;
const QString second = u"com.example.second"_s;

class KeychainServiceTest : public ::testing::Test {
protected:
    std::optional<QString> get() { return awaited(m_service.get(account)); }
    bool hasValue() { return awaited(m_service.hasValue(account)); }

    /// The status of the error, or 0 when there was none.
    qint32 statusOf(QCoro::Task<void> task)
    {
        try {
            awaited(std::move(task));
        } catch (const KeychainError &error) {
            return error.status();
        }
        return 0;
    }

    FakeKeyStore m_store;
    KeychainService m_service{m_store, current, {first, second}};
};

TEST_F(KeychainServiceTest, givesNothingWhereThereIsNothing)
{
    EXPECT_EQ(get(), std::nullopt);
    EXPECT_FALSE(hasValue());
    EXPECT_EQ(m_store.itemCount(), 0U);
}

TEST_F(KeychainServiceTest, searchesTheServicesInOrderUntilOneHasTheKey)
{
    EXPECT_EQ(get(), std::nullopt);
    EXPECT_THAT(m_store.calls(), ElementsAre(FakeKeyStore::Call{Operation::copyMatching, current, account},
                                             FakeKeyStore::Call{Operation::copyMatching, first, account},
                                             FakeKeyStore::Call{Operation::copyMatching, second, account}));
}

TEST_F(KeychainServiceTest, readsTheCurrentServiceOnlyWhenItHasTheKey)
{
    m_store.setItem(current, account, "sk-ümlaut");
    m_store.setItem(first, account, "older");
    EXPECT_EQ(get(), u"sk-ümlaut"_s);
    EXPECT_THAT(m_store.calls(), ElementsAre(FakeKeyStore::Call{Operation::copyMatching, current, account}));
}

TEST_F(KeychainServiceTest, returnsAnEmptyKeyWithoutSearchingFurther)
{
    m_store.setItem(current, account, "");
    m_store.setItem(first, account, "older");
    EXPECT_EQ(get(), QString());
    EXPECT_FALSE(hasValue());
    EXPECT_EQ(m_store.item(current, account), QByteArray(""));
}

TEST_F(KeychainServiceTest, carriesAKeyOfTheSecondEarlierIdentityForward)
{
    m_store.setItem(second, account, "sk-ключ");
    EXPECT_EQ(get(), u"sk-ключ"_s);
    EXPECT_EQ(m_store.item(current, account), QByteArray("sk-ключ"));
    EXPECT_EQ(m_store.item(second, account), QByteArray("sk-ключ"));
    EXPECT_EQ(m_store.item(first, account), std::nullopt);
}

TEST_F(KeychainServiceTest, prefersTheFirstEarlierIdentity)
{
    m_store.setItem(first, account, "one");
    m_store.setItem(second, account, "two");
    EXPECT_EQ(get(), u"one"_s);
    EXPECT_EQ(m_store.item(current, account), QByteArray("one"));
}

TEST_F(KeychainServiceTest, carriesForwardWhenOnlyAskedWhetherThereIsAKey)
{
    m_store.setItem(first, account, "one");
    EXPECT_TRUE(hasValue());
    EXPECT_EQ(m_store.item(current, account), QByteArray("one"));
}

TEST_F(KeychainServiceTest, stopsAtAnEmptyKeyOfAnEarlierIdentity)
{
    m_store.setItem(first, account, "");
    m_store.setItem(second, account, "two");
    EXPECT_EQ(get(), QString());
    EXPECT_EQ(m_store.item(current, account), QByteArray(""));
}

TEST_F(KeychainServiceTest, discardsAFailureToCarryForward)
{
    m_store.setItem(first, account, "one");
    m_store.setStatus(Operation::update, KeyStoreStatus::authorizationFailed);
    EXPECT_EQ(get(), u"one"_s);
    m_store.setStatus(Operation::update, std::nullopt);
    m_store.setStatus(Operation::add, KeyStoreStatus::notAvailable);
    EXPECT_EQ(get(), u"one"_s);
    EXPECT_EQ(m_store.item(current, account), std::nullopt);
}

TEST_F(KeychainServiceTest, takesBytesThatAreNotUTF8AsNoKeyAndSearchesOn)
{
    for (const QByteArray &bytes : {QByteArray("\xFF\xFE"), QByteArray("sk-\xC3"), QByteArray("\xED\xA0\x80"),
                                    QByteArray("\xC0\xAF"), QByteArray("a\x80")}) {
        FakeKeyStore store;
        const KeychainService service(store, current, {first, second});
        store.setItem(current, account, bytes);
        EXPECT_EQ(awaited(service.get(account)), std::nullopt) << bytes.toHex().toStdString();
        store.setItem(second, account, "good");
        EXPECT_EQ(awaited(service.get(account)), u"good"_s) << bytes.toHex().toStdString();
        EXPECT_EQ(store.item(current, account), QByteArray("good"));
    }
}

TEST_F(KeychainServiceTest, keepsEveryCharacterOfTheKey)
{
    m_store.setItem(current, account, "\xEF\xBB\xBF  key\n");
    EXPECT_EQ(get(), u"\uFEFF  key\n"_s);
}

TEST_F(KeychainServiceTest, readsEveryFailureAsNoKey)
{
    m_store.setItem(current, account, "present");
    for (const qint32 status : {KeyStoreStatus::notAvailable, KeyStoreStatus::authorizationFailed,
                                KeyStoreStatus::interactionNotAllowed, KeyStoreStatus::userCanceled, -1}) {
        m_store.setStatus(Operation::copyMatching, status);
        EXPECT_EQ(get(), std::nullopt);
        EXPECT_FALSE(hasValue());
    }
}

TEST_F(KeychainServiceTest, tellsAStoreThatCannotBeAskedFromOneThatHasNothing)
{
    EXPECT_FALSE(awaited(m_service.hasValue(account, Failures::thrown)));
    m_store.setItem(second, account, "older");
    EXPECT_TRUE(awaited(m_service.hasValue(account, Failures::thrown)));
    EXPECT_EQ(m_store.item(current, account), QByteArray("older")) << "carried forward";
    m_store.setItem(current, account, "");
    EXPECT_FALSE(awaited(m_service.hasValue(account, Failures::thrown)));
    for (const qint32 status : {KeyStoreStatus::notAvailable, KeyStoreStatus::authorizationFailed,
                                KeyStoreStatus::interactionNotAllowed, KeyStoreStatus::userCanceled, -1}) {
        FakeKeyStore store;
        const KeychainService service(store, current, {first, second});
        store.setItem(second, account, "older");
        store.setStatus(Operation::copyMatching, status);
        const auto ask = [&]() -> QCoro::Task<void> { (void)co_await service.hasValue(account, Failures::thrown); };
        EXPECT_EQ(statusOf(ask()), status);
        EXPECT_EQ(store.calls().size(), 1U) << "and asks no further";
    }
}

TEST_F(KeychainServiceTest, tellsApartAccounts)
{
    m_store.setItem(current, u"xai_api_key"_s, "other");
    EXPECT_EQ(get(), std::nullopt);
    EXPECT_EQ(awaited(m_service.get(u"xai_api_key"_s)), u"other"_s);
}

TEST_F(KeychainServiceTest, cachesNothing)
{
    m_store.setItem(current, account, "one");
    EXPECT_EQ(get(), u"one"_s);
    m_store.setItem(current, account, "two");
    EXPECT_EQ(get(), u"two"_s);
}

TEST_F(KeychainServiceTest, replacesAnItemInPlace)
{
    m_store.setItem(current, account, "one");
    awaited(m_service.set(u"zwö"_s, account));
    EXPECT_EQ(m_store.item(current, account), QByteArray("zwö"));
    EXPECT_THAT(m_store.calls(), ElementsAre(FakeKeyStore::Call{Operation::update, current, account}));
}

TEST_F(KeychainServiceTest, addsAMissingItem)
{
    m_store.setItem(first, account, "older");
    awaited(m_service.set(u"new"_s, account));
    EXPECT_EQ(m_store.item(current, account), QByteArray("new"));
    EXPECT_EQ(m_store.item(first, account), QByteArray("older"));
    EXPECT_THAT(m_store.calls(), ElementsAre(FakeKeyStore::Call{Operation::update, current, account},
                                             FakeKeyStore::Call{Operation::add, current, account}));
}

TEST_F(KeychainServiceTest, failsWithTheStatusOfTheUpdateAndDoesNotAdd)
{
    m_store.setStatus(Operation::update, KeyStoreStatus::userCanceled);
    EXPECT_EQ(statusOf(m_service.set(u"new"_s, account)), KeyStoreStatus::userCanceled);
    EXPECT_THAT(m_store.calls(), ElementsAre(FakeKeyStore::Call{Operation::update, current, account}));
}

TEST_F(KeychainServiceTest, failsWithTheStatusOfTheAddition)
{
    m_store.setStatus(Operation::add, KeyStoreStatus::interactionNotAllowed);
    EXPECT_EQ(statusOf(m_service.set(u"new"_s, account)), KeyStoreStatus::interactionNotAllowed);
    m_store.setStatus(Operation::add, KeyStoreStatus::itemNotFound);
    EXPECT_EQ(statusOf(m_service.set(u"new"_s, account)), KeyStoreStatus::itemNotFound);
}

TEST_F(KeychainServiceTest, removesTheItemOfTheCurrentServiceOnly)
{
    m_store.setItem(current, account, "one");
    m_store.setItem(first, account, "older");
    EXPECT_EQ(statusOf(m_service.remove(account)), 0);
    EXPECT_EQ(m_store.item(current, account), std::nullopt);
    EXPECT_EQ(m_store.item(first, account), QByteArray("older"));
    EXPECT_EQ(get(), u"older"_s);
}

TEST_F(KeychainServiceTest, removesAMissingItemSilently)
{
    EXPECT_EQ(statusOf(m_service.remove(account)), 0);
}

TEST_F(KeychainServiceTest, failsWithTheStatusOfTheRemoval)
{
    m_store.setItem(current, account, "one");
    m_store.setStatus(Operation::remove, KeyStoreStatus::authorizationFailed);
    EXPECT_EQ(statusOf(m_service.remove(account)), KeyStoreStatus::authorizationFailed);
}

TEST_F(KeychainServiceTest, suspendsWhileTheStoreAnswers)
{
    m_store.setItem(current, account, "one");
    m_store.gate().close();
    auto pending = m_service.get(account);
    EXPECT_FALSE(pending.isReady());
    m_store.gate().open();
    ASSERT_TRUE(pending.isReady());
    EXPECT_EQ(awaited(std::move(pending)), u"one"_s);
}

} // namespace
} // namespace orvesa
