#include "AI/RequestBody.h"

#include <algorithm>
#include <utility>

namespace orvesa {

RequestBody::RequestBody(QByteArray bytes, QObject *parent) : QIODevice(parent), m_bytes(std::move(bytes))
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool RequestBody::seek(qint64 position)
{
    return m_read == 0 && position == 0 && QIODevice::seek(position);
}

qint64 RequestBody::readData(char *data, qint64 length)
{
    const qint64 count = std::min<qint64>(length, m_bytes.size() - m_read);
    if (count <= 0) {
        return m_bytes.isEmpty() ? 0 : -1;
    }
    std::copy_n(m_bytes.constBegin() + m_read, count, data);
    m_read += count;
    return count;
}

qint64 RequestBody::writeData(const char *, qint64)
{
    return -1;
}

} // namespace orvesa
