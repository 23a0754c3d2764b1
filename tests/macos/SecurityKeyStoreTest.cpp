#include "Platform/macos/SecurityKeyStore.h"

#include "Core/KeychainError.h"
#include "Core/KeychainService.h"
#include "Platform/KeyStoreContract.h"
#include "fakes/Awaited.h"
#include "macos/RecorderTest.h"
#include "macos/recorders/Keychain.h"

#include <QElapsedTimer>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tests::Calls;

namespace {

const KeyStoreQuery query{u"com.example.test"_s, u"openai_api_key"_s};

class SecurityKeyStoreTest : public tests::RecorderTest {
protected:
    /// Calls that nobody waits for any more end by themselves; what they hold goes with them.
    void letThreadsEnd(std::size_t calls)
    {
        await([calls] { return recorders::calls().size() == calls; });
        m_keychain.let();
        await([] { return recorders::liveObjects() == 0; });
    }
    template <typename Condition>
    static void await(Condition condition)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        while (!condition() && elapsed.elapsed() < 5000) {
            std::this_thread::yield();
        }
    }

    recorders::Keychain m_keychain;
};

} // namespace

TEST_F(SecurityKeyStoreTest, KeepsTheContract)
{
    SecurityKeyStore store;
    tests::expectKeyStoreContract(store, tests::Secrets::bytes);
}

TEST_F(SecurityKeyStoreTest, KeepsTheContractWhenItIsClosed)
{
    m_keychain.hold();
    SecurityKeyStore store;
    tests::expectKeyStoreClosingContract(store);
    letThreadsEnd(2);
    EXPECT_EQ(recorders::calls().size(), 2U) << "a closed store asks for nothing";
}

TEST_F(SecurityKeyStoreTest, AsksWithTheseAttributesAndNoOthers)
{
    SecurityKeyStore store;
    EXPECT_EQ(awaited(store.update(query, "one")), KeyStoreStatus::itemNotFound);
    EXPECT_EQ(awaited(store.add(query, "one")), KeyStoreStatus::success);
    EXPECT_EQ(awaited(store.copyMatching(query)).data, "one");
    EXPECT_EQ(awaited(store.remove(query)), KeyStoreStatus::success);
    EXPECT_EQ(recorders::calls(),
              (Calls{"SecItemUpdate {class: genp, svce: com.example.test, acct: openai_api_key} {v_Data: <one>}",
                     "SecItemAdd {class: genp, svce: com.example.test, acct: openai_api_key, v_Data: <one>}",
                     "SecItemCopyMatching {class: genp, svce: com.example.test, acct: openai_api_key, r_Data: true, "
                     "m_Limit: m_LimitOne}",
                     "SecItemDelete {class: genp, svce: com.example.test, acct: openai_api_key}"}));
}

TEST_F(SecurityKeyStoreTest, PassesStatusesOn)
{
    SecurityKeyStore store;
    for (const OSStatus status : {errSecUserCanceled, errSecAuthFailed, errSecNotAvailable, errSecDuplicateItem}) {
        m_keychain.setStatus(status);
        EXPECT_EQ(awaited(store.copyMatching(query)).status, status);
        EXPECT_EQ(awaited(store.update(query, "x")), status);
        EXPECT_EQ(awaited(store.add(query, "x")), status);
        EXPECT_EQ(awaited(store.remove(query)), status);
    }
}

TEST_F(SecurityKeyStoreTest, SuspendsWhileTheSystemAsksTheUser)
{
    m_keychain.setItem({query.service, query.account}, "secret");
    m_keychain.hold();
    SecurityKeyStore store;
    auto reading = store.copyMatching(query);
    EXPECT_FALSE(reading.isReady()) << "the main thread goes on";
    m_keychain.let();
    EXPECT_EQ(awaited(std::move(reading)).data, "secret");
}

TEST_F(SecurityKeyStoreTest, EndsAfterItsBound)
{
    m_keychain.hold();
    SecurityKeyStore store(50ms);
    EXPECT_EQ(awaited(store.copyMatching(query)).status, KeyStoreStatus::interactionNotAllowed);
    EXPECT_EQ(awaited(store.remove(query)), KeyStoreStatus::interactionNotAllowed);
    letThreadsEnd(2);
}

TEST_F(SecurityKeyStoreTest, CarriesAnEarlierKeyForward)
{
    m_keychain.setItem({u"com.example.older"_s, query.account}, "earlier");
    SecurityKeyStore store;
    const KeychainService service(store, query.service, {u"com.example.old"_s, u"com.example.older"_s});
    EXPECT_EQ(awaited(service.get(query.account)), u"earlier"_s);
    EXPECT_EQ(m_keychain.item({query.service, query.account}), "earlier");
    EXPECT_EQ(m_keychain.item({u"com.example.older"_s, query.account}), "earlier");
}

} // namespace orvesa
