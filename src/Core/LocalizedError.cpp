#include "Core/LocalizedError.h"

namespace orvesa {

const char *LocalizedError::what() const noexcept
{
    return "orvesa::LocalizedError";
}

QString localizedDescription(const std::exception &error)
{
    if (const auto *localized = dynamic_cast<const LocalizedError *>(&error)) {
        return localized->errorDescription();
    }
    return QString::fromUtf8(error.what());
}

} // namespace orvesa
