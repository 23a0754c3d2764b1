#pragma once

// A key store operation that ended with a status other than success. The wording is English only and carries the
// number. Value type, any thread.

#include "Core/LocalizedError.h"

namespace orvesa {

class KeychainError final : public LocalizedError {
public:
    /// `status` in the numbering of the macOS Security framework (see Platform/KeyStorePort.h).
    explicit KeychainError(qint32 unexpectedStatus);

    [[nodiscard]] qint32 status() const noexcept { return m_status; }
    [[nodiscard]] QString errorDescription() const override;

private:
    qint32 m_status;
};

} // namespace orvesa
