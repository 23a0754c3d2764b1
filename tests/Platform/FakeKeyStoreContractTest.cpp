#include "Platform/KeyStoreContract.h"
#include "fakes/FakeKeyStore.h"

#include <gtest/gtest.h>

namespace orvesa {

TEST(FakeKeyStoreContract, IsKept)
{
    FakeKeyStore store;
    tests::expectKeyStoreContract(store, tests::Secrets::bytes);
}

} // namespace orvesa
