#include "Models/AppError.h"

#include "Core/Localization.h"

#include <utility>

namespace orvesa {

namespace {

L10nKey messageKey(AppError::Kind kind)
{
    switch (kind) {
    case AppError::Kind::apiRequestFailed:
        break;
    case AppError::Kind::accessibilityPermissionDenied:
        return L10nKey::errorAccessibilityPermissionDenied;
    case AppError::Kind::noSelectedText:
        return L10nKey::errorNoSelectedText;
    case AppError::Kind::missingAPIKey:
        return L10nKey::errorMissingAPIKey;
    case AppError::Kind::unsupportedProvider:
        return L10nKey::errorUnsupportedProvider;
    case AppError::Kind::invalidAPIResponse:
        return L10nKey::errorInvalidAPIResponse;
    case AppError::Kind::clipboardFailed:
        return L10nKey::errorClipboardFailed;
    case AppError::Kind::ocrCaptureFailed:
        return L10nKey::errorOCRCaptureFailed;
    case AppError::Kind::ocrNoTextFound:
        return L10nKey::errorOCRNoText;
    }
    return L10nKey::errorAPIRequestFailed;
}

} // namespace

AppError::AppError(Kind kind) : m_kind(kind) {}

AppError AppError::apiRequestFailed(QString message)
{
    AppError error(Kind::apiRequestFailed);
    error.m_message = std::move(message);
    return error;
}

QString AppError::errorDescription() const
{
    const L10nKey key = messageKey(m_kind);
    return m_kind == Kind::apiRequestFailed ? Localization::format(key, m_message) : Localization::string(key);
}

AppError mapToAppError(const std::exception &error)
{
    if (const auto *known = dynamic_cast<const AppError *>(&error)) {
        return *known;
    }
    return AppError::apiRequestFailed(localizedDescription(error));
}

} // namespace orvesa
