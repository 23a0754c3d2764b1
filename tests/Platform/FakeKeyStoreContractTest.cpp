#include "Platform/KeyStoreContract.h"
#include "fakes/FakeKeyStore.h"

#include <gtest/gtest.h>

namespace orvesa {

TEST(FakeKeyStoreContract, IsKept)
{
    FakeKeyStore store;
    tests::expectKeyStoreContract(store, tests::Secrets::bytes);
}

TEST(FakeKeyStoreContract, IsKeptWhenItIsClosed)
{
    FakeKeyStore store;
    store.gate().close();
    tests::expectKeyStoreClosingContract(store);
}

} // namespace orvesa
