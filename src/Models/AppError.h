#pragma once

// The one error that the program's own services raise when a task cannot be carried out.
// Value type; wording it is for the main thread.

#include "Core/LocalizedError.h"

#include <QString>

namespace orvesa {

class AppError final : public LocalizedError {
public:
    enum class Kind {
        apiRequestFailed,
        accessibilityPermissionDenied,
        noSelectedText,
        missingAPIKey,
        unsupportedProvider,
        invalidAPIResponse,
        clipboardFailed,
        ocrCaptureFailed,
        ocrNoTextFound,
    };

    /// Any case without a payload.
    explicit AppError(Kind kind);
    /// `message` is shown as it is: untrusted, plain text.
    [[nodiscard]] static AppError apiRequestFailed(QString message);

    [[nodiscard]] Kind kind() const noexcept { return m_kind; }
    /// The payload of apiRequestFailed, empty for the other cases.
    [[nodiscard]] const QString &message() const noexcept { return m_message; }
    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const AppError &other) const { return m_kind == other.m_kind && m_message == other.m_message; }

private:
    Kind m_kind;
    QString m_message;
};

/// An AppError as it is; anything else as apiRequestFailed with its localized description.
[[nodiscard]] AppError mapToAppError(const std::exception &error);

} // namespace orvesa
