#include "Platform/KeyStoreContract.h"

#include "fakes/Awaited.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvesa::tests {

using namespace Qt::StringLiterals;

namespace {

const KeyStoreQuery openAI{u"com.example.test"_s, u"openai_api_key"_s};
const KeyStoreQuery xAI{u"com.example.test"_s, u"xai_api_key"_s};
const KeyStoreQuery elsewhere{u"com.example.older"_s, u"openai_api_key"_s};

class Contract final {
public:
    explicit Contract(KeyStorePort &store) : m_store(store) {}

    void hasNothing(const KeyStoreQuery &query)
    {
        const KeyStoreCopyResult copy = awaited(m_store.copyMatching(query));
        EXPECT_EQ(copy.status, KeyStoreStatus::itemNotFound) << query.service.toStdString();
        EXPECT_EQ(copy.data, QByteArray());
    }
    void has(const KeyStoreQuery &query, const QByteArray &secret)
    {
        const KeyStoreCopyResult copy = awaited(m_store.copyMatching(query));
        EXPECT_EQ(copy.status, KeyStoreStatus::success);
        EXPECT_TRUE(copy.data == secret) << copy.data.left(40).toStdString() << " in place of "
                                         << secret.left(40).toStdString();
    }
    void add(const KeyStoreQuery &query, const QByteArray &secret)
    {
        EXPECT_EQ(awaited(m_store.add(query, secret)), KeyStoreStatus::success);
    }
    void update(const KeyStoreQuery &query, const QByteArray &secret)
    {
        EXPECT_EQ(awaited(m_store.update(query, secret)), KeyStoreStatus::success);
    }
    void remove(const KeyStoreQuery &query) { EXPECT_EQ(awaited(m_store.remove(query)), KeyStoreStatus::success); }

private:
    KeyStorePort &m_store;
};

} // namespace

void expectKeyStoreContract(KeyStorePort &store, Secrets secrets)
{
    Contract contract(store);
    store.warmUp();
    contract.hasNothing(openAI);
    EXPECT_EQ(awaited(store.update(openAI, "sk")), KeyStoreStatus::itemNotFound);
    EXPECT_EQ(awaited(store.remove(openAI)), KeyStoreStatus::itemNotFound);
    contract.hasNothing(openAI);

    // Items are told apart by service and by account.
    contract.add(openAI, "sk-one");
    contract.has(openAI, "sk-one");
    contract.hasNothing(xAI);
    contract.hasNothing(elsewhere);
    contract.add(elsewhere, "sk-older");
    contract.add(xAI, "sk-x");
    contract.update(openAI, "sk-two");
    contract.has(openAI, "sk-two");
    contract.has(elsewhere, "sk-older");
    contract.has(xAI, "sk-x");

    // Secrets come back as they went in.
    std::vector<QByteArray> values{"", " \n sk \t", "schlüssel 鍵 🎉", QByteArray(20000, 'k')};
    if (secrets == Secrets::bytes) {
        values.emplace_back("sk\0\xff\xfe", 5);
    }
    for (const QByteArray &value : values) {
        contract.update(openAI, value);
        contract.has(openAI, value);
    }

    // Operations at the same time do not get in each other's way.
    contract.update(openAI, "sk-three");
    auto first = store.copyMatching(openAI);
    auto second = store.copyMatching(xAI);
    auto third = store.update(elsewhere, "sk-oldest");
    EXPECT_EQ(awaited(std::move(second)).data, "sk-x");
    EXPECT_EQ(awaited(std::move(first)).data, "sk-three");
    EXPECT_EQ(awaited(std::move(third)), KeyStoreStatus::success);

    contract.remove(openAI);
    contract.hasNothing(openAI);
    contract.has(elsewhere, "sk-oldest");
    EXPECT_EQ(awaited(store.remove(openAI)), KeyStoreStatus::itemNotFound);
    contract.remove(elsewhere);
    contract.remove(xAI);
    contract.hasNothing(xAI);
}

void expectKeyStoreClosingContract(KeyStorePort &store)
{
    auto reading = store.copyMatching(openAI);
    auto writing = store.update(openAI, "sk");
    EXPECT_FALSE(reading.isReady());
    EXPECT_FALSE(writing.isReady());
    store.close();
    ASSERT_TRUE(reading.isReady()) << "whoever waits hears of it before those whom it touches are gone";
    ASSERT_TRUE(writing.isReady());
    EXPECT_EQ(awaited(std::move(reading)).status, KeyStoreStatus::userCanceled);
    EXPECT_EQ(awaited(std::move(writing)), KeyStoreStatus::userCanceled);

    EXPECT_EQ(awaited(store.copyMatching(openAI)).status, KeyStoreStatus::userCanceled);
    EXPECT_EQ(awaited(store.update(openAI, "sk")), KeyStoreStatus::userCanceled);
    EXPECT_EQ(awaited(store.add(openAI, "sk")), KeyStoreStatus::userCanceled);
    EXPECT_EQ(awaited(store.remove(openAI)), KeyStoreStatus::userCanceled);
    store.close();
}

} // namespace orvesa::tests
