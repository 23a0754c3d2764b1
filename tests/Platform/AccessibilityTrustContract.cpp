#include "Platform/AccessibilityTrustContract.h"

#include <gtest/gtest.h>

namespace orvesa::tests {

void expectAccessibilityTrustContract(AccessibilityTrustPort &trust, const AccessibilityTrustBench &bench)
{
    bench.decide(true);
    EXPECT_TRUE(trust.isTrusted());
    bench.decide(false);
    EXPECT_FALSE(trust.isTrusted());
    EXPECT_EQ(bench.requests(), 0) << "looking asks nobody";

    // Asking is not granting.
    trust.requestTrust();
    EXPECT_EQ(bench.requests(), 1);
    EXPECT_FALSE(trust.isTrusted());

    bench.decide(true);
    EXPECT_TRUE(trust.isTrusted());
    bench.decide(false);
    EXPECT_FALSE(trust.isTrusted()) << "what was given can be withdrawn";
    bench.decide(true);
}

} // namespace orvesa::tests
