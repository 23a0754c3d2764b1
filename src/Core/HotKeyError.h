#pragma once

// A global shortcut could not be set up. The wording is English only and carries the platform's status.
// Value type, any thread.

#include "Core/LocalizedError.h"

namespace orvesa {

class HotKeyError final : public LocalizedError {
public:
    enum class Kind { installFailed, registrationFailed };

    HotKeyError(Kind kind, qint32 status);

    [[nodiscard]] Kind kind() const noexcept { return m_kind; }
    [[nodiscard]] qint32 status() const noexcept { return m_status; }
    [[nodiscard]] QString errorDescription() const override;

private:
    Kind m_kind;
    qint32 m_status;
};

} // namespace orvesa
