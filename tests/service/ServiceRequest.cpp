#include "service/ServiceRequest.h"

#include <ctime>

namespace orvesa::service {

qint64 monotonicNanoseconds()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<qint64>(now.tv_sec) * 1'000'000'000 + static_cast<qint64>(now.tv_nsec);
}

std::optional<QByteArray> ServiceRequest::header(QByteArrayView name) const
{
    for (const auto &[headerName, value] : headers) {
        if (headerName.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return std::nullopt;
}

QByteArray ServiceRequest::path() const
{
    const qsizetype query = target.indexOf('?');
    return query < 0 ? target : target.first(query);
}

} // namespace orvesa::service
