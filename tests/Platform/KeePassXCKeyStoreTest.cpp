// The key store's adapter with KeePassXC behind it.

#include "Platform/AdoptedDesktop.h"
#include "Platform/KeePassXC.h"
#include "Platform/KeyStoreContract.h"
#include "Platform/linux/SecretServiceKeyStore.h"
#include "fakes/Awaited.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

namespace orvesa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tests::AdoptedDesktop;
using tests::KeePassXC;

namespace {

const KeyStoreQuery query{u"com.example.test"_s, u"openai_api_key"_s};

desktop::DesktopOptions plain()
{
    desktop::DesktopOptions options;
    options.accessibility = desktop::Accessibility::none;
    options.keyStore = desktop::KeyStore::absent;
    return options;
}

} // namespace

TEST(KeePassXCKeyStore, KeepsTheContract)
{
    AdoptedDesktop desktop(plain());
    const KeePassXC keePassXC(*desktop, KeePassXC::Questions::none);
    SecretServiceKeyStore store(u"Orvesa Translate"_s);
    tests::expectKeyStoreContract(store, tests::Secrets::text);
}

TEST(KeePassXCKeyStore, IsGivenTheTimeOfItsPrompt)
{
    AdoptedDesktop desktop(plain());
    KeePassXC keePassXC(*desktop, KeePassXC::Questions::unlockBeforeSearch);
    {
        SecretServiceKeyStore store(u"Orvesa Translate"_s);
        ASSERT_EQ(awaited(store.add(query, "sk")), KeyStoreStatus::success);
    }
    keePassXC.lock();
    SecretServiceKeyStore store(u"Orvesa Translate"_s, {.answer = 700ms, .prompt = 2500ms});
    QElapsedTimer timer;
    timer.start();
    // It shows its window for unlocking and holds the search back meanwhile.
    EXPECT_EQ(awaited(store.copyMatching(query)).status, KeyStoreStatus::interactionNotAllowed);
    EXPECT_GE(timer.elapsed(), 2400) << "it was taken for one that hangs";
    EXPECT_LT(timer.elapsed(), 6000);
}

} // namespace orvesa
