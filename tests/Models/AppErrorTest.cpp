#include "Models/AppError.h"
#include "Core/KeychainError.h"
#include "Core/Localization.h"
#include "fakes/InterfaceLanguage.h"
#include "fakes/QtPrinting.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace orvesa {
namespace {

using namespace Qt::StringLiterals;
using Kind = AppError::Kind;

TEST(AppErrorDescription, isTheTextOfTheCasesKey)
{
    EXPECT_EQ(
        AppError(Kind::accessibilityPermissionDenied).errorDescription(),
        u"Accessibility permission is required. Enable it in System Settings › Privacy & Security › Accessibility, "
        u"then try again."_s);
    EXPECT_EQ(AppError(Kind::noSelectedText).errorDescription(),
              u"No text is selected. Select some text in any app and try again."_s);
    EXPECT_EQ(AppError(Kind::missingAPIKey).errorDescription(),
              u"API key is missing for the selected provider. Add it in Settings."_s);
    EXPECT_EQ(AppError(Kind::unsupportedProvider).errorDescription(), u"The selected AI provider is not supported."_s);
    EXPECT_EQ(AppError(Kind::invalidAPIResponse).errorDescription(), u"The API returned an unexpected response."_s);
    EXPECT_EQ(AppError(Kind::clipboardFailed).errorDescription(), u"Failed to read the selection via the clipboard."_s);
    EXPECT_EQ(AppError(Kind::ocrCaptureFailed).errorDescription(),
              u"Screen capture failed. Check Screen Recording permission in System Settings › Privacy & Security."_s);
    EXPECT_EQ(AppError(Kind::ocrNoTextFound).errorDescription(), u"No text was recognized in the captured area."_s);
}

TEST(AppErrorDescription, holdsThePayloadOfAFailedRequest)
{
    EXPECT_EQ(AppError::apiRequestFailed(u"HTTP 500"_s).errorDescription(), u"API request failed: HTTP 500"_s);
    EXPECT_EQ(AppError::apiRequestFailed(u"  a\nb  "_s).errorDescription(), u"API request failed:   a\nb  "_s);
}

TEST(AppErrorDescription, endsAfterTheColonAndBlankForAnEmptyPayload)
{
    EXPECT_EQ(AppError::apiRequestFailed(QString()).errorDescription(), u"API request failed: "_s);
}

TEST(AppErrorDescription, takesThePayloadAsAnArgumentAndNeverAsAFormat)
{
    EXPECT_EQ(AppError::apiRequestFailed(u"%@ and %1 and %s and %%"_s).errorDescription(),
              u"API request failed: %@ and %1 and %s and %%"_s);
    EXPECT_EQ(AppError::apiRequestFailed(u"<b>x</b>"_s).errorDescription(), u"API request failed: <b>x</b>"_s);
}

TEST(AppErrorDescription, followsTheInterfaceLanguageOfTheMoment)
{
    const AppError error(Kind::noSelectedText);
    EXPECT_EQ(error.errorDescription(), u"No text is selected. Select some text in any app and try again."_s);
    const InterfaceLanguage japanese(AppLanguage::japanese);
    EXPECT_EQ(error.errorDescription(),
              u"テキストが選択されていません。任意のアプリでテキストを選択してから再試行してください。"_s);
    EXPECT_EQ(AppError::apiRequestFailed(u"x"_s).errorDescription(), u"API リクエストに失敗しました：x"_s);
    EXPECT_EQ(AppError(Kind::ocrNoTextFound).errorDescription(), Localization::string(L10nKey::errorOCRNoText));
}

TEST(AppError, isEqualWhenCaseAndPayloadAre)
{
    EXPECT_EQ(AppError(Kind::missingAPIKey), AppError(Kind::missingAPIKey));
    EXPECT_NE(AppError(Kind::missingAPIKey), AppError(Kind::clipboardFailed));
    EXPECT_EQ(AppError::apiRequestFailed(u"a"_s), AppError::apiRequestFailed(u"a"_s));
    EXPECT_NE(AppError::apiRequestFailed(u"a"_s), AppError::apiRequestFailed(u"b"_s));
    EXPECT_EQ(AppError::apiRequestFailed(u"a"_s).kind(), Kind::apiRequestFailed);
    EXPECT_EQ(AppError::apiRequestFailed(u"a"_s).message(), u"a"_s);
}

TEST(AppError, isShownThroughItsDescriptionWhenCaughtAsAnyException)
{
    try {
        throw AppError(Kind::clipboardFailed);
    } catch (const std::exception &error) {
        EXPECT_EQ(localizedDescription(error), u"Failed to read the selection via the clipboard."_s);
    }
}

TEST(MappingToAppError, keepsAnAppError)
{
    EXPECT_EQ(mapToAppError(AppError(Kind::noSelectedText)), AppError(Kind::noSelectedText));
    EXPECT_EQ(mapToAppError(AppError::apiRequestFailed(u"x"_s)), AppError::apiRequestFailed(u"x"_s));
}

TEST(MappingToAppError, wrapsEverythingElseWithItsDescription)
{
    EXPECT_EQ(mapToAppError(std::runtime_error("keine Verbindung für %@")),
              AppError::apiRequestFailed(u"keine Verbindung für %@"_s));
    EXPECT_EQ(mapToAppError(KeychainError(-25293)), AppError::apiRequestFailed(u"Keychain error (status: -25293)"_s));
}

} // namespace
} // namespace orvesa
