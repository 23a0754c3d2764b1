#include "Core/LocalizedError.h"
#include "Core/KeychainError.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;

TEST(KeychainErrorDescription, endsInTheStatus)
{
    EXPECT_EQ(KeychainError(-25293).errorDescription(), u"Keychain error (status: -25293)"_s);
    EXPECT_EQ(KeychainError(5).errorDescription(), u"Keychain error (status: 5)"_s);
    EXPECT_EQ(KeychainError(std::numeric_limits<qint32>::min()).errorDescription(),
              u"Keychain error (status: -2147483648)"_s);
    EXPECT_EQ(KeychainError(-128).status(), -128);
}

TEST(LocalizedDescription, isTheOwnWordingOfOurErrorsAndTheTextOfOthers)
{
    const KeychainError ours(-128);
    EXPECT_EQ(localizedDescription(static_cast<const std::exception &>(ours)), u"Keychain error (status: -128)"_s);
    EXPECT_EQ(localizedDescription(std::runtime_error("Gerät fehlt")), u"Gerät fehlt"_s);
}

TEST(LocalizedErrorWhat, saysNothingOfTheCase)
{
    EXPECT_STREQ(KeychainError(-25293).what(), "orvesa::LocalizedError");
}

} // namespace
} // namespace orvesa
